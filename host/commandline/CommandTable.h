// What can be said on the command lines of both programs, as data: their commands, and the files and options that each
// takes. Parser, help, completions and manual page are made from it; whatever else describes the command lines belongs
// here too.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace host {

enum class Command : unsigned {
  kHelp = 1,    // nothing is named, and nothing can be done
  kWindows = 2, // nothing is named, which opens the windows
  kRun = 4,
  kCheck = 8,
  kList = 16,
  kTraceShow = 32,
  kTraceExport = 64,
  kSend = 128,
  kTerm = 256,
  kPorts = 512,
  kPrompt = 1024,
  kCompletion = 2048,
  kManual = 4096,
};

struct CommandRow {
  std::string_view program;
  Command command;
  std::string_view name; // empty where nothing is named; "GROUP NAME" of a command in a group
  std::string_view description;
  std::string_view examples; // lines, each with its end
  std::string_view notes;    // what else a user must know, mostly about exit codes
};

// The commands of all programs.
std::span<const CommandRow> Commands();

enum class Occurrence { kOnce, kNeeded, kRepeated, kNeededRepeated };

struct OptionRow {
  unsigned commands;    // the Command values that take it, as bits
  std::string name;     // "--set"; of a file, what stands for it in the help: "FILE"
  std::string argument; // what its value looks like; empty: it has none
  std::string description;
  Occurrence occurrence = Occurrence::kOnce;
  std::string choices{}; // the values that there are, with blanks between; empty: they are not known

  bool IsOf(Command command) const { return (commands & static_cast<unsigned>(command)) != 0; }
  bool IsOption() const { return name.starts_with('-'); }
  bool IsNeeded() const { return occurrence == Occurrence::kNeeded || occurrence == Occurrence::kNeededRepeated; }
  bool IsRepeated() const { return occurrence == Occurrence::kRepeated || occurrence == Occurrence::kNeededRepeated; }
};

// The files and options of all commands, in the order of the help. Every command takes `--help` too, and every program
// `--version`.
std::span<const OptionRow> Options();

} // namespace host
