// A simulated device as its file describes it.
#pragma once

#include "host/channel/FaultyChannel.h"
#include "host/channel/sim/Cable.h"
#include "host/channel/sim/description/FilledText.h"
#include "host/channel/sim/description/Pattern.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace host {

// When and how an answer is given.
struct Pace {
  std::chrono::milliseconds delay{0};
  std::size_t pieceSize = 0;        // bytes; 0: all at once
  std::chrono::milliseconds gap{0}; // between the pieces
};

// What a rule does, one after the other.
struct Say {
  FilledText text;
  bool endsLine;            // with the device's ending
  std::optional<Pace> pace; // otherwise that of all answers
};
struct SetValue {
  ValuePlace place;
  FilledText text;
};
struct AddToValue {
  ValuePlace place;
  std::int64_t number;
};
struct GoToState {
  std::string state;
};
using Action = std::variant<Say, SetValue, AddToValue, GoToState>;

struct Rule {
  enum class Trigger { kCommand, kOtherwise, kEvery, kStart };
  Trigger trigger;
  Pattern pattern;                       // of a command
  std::chrono::milliseconds interval{0}; // of what is said unasked
  std::string state;                     // it holds in; empty: in all of them
  std::vector<Action> actions;
};

// How the device talks.
struct ConsoleDescription {
  std::string answerEnding = "\r\n";
  std::string commandEnding; // empty: CR or LF, and empty lines are passed over
  std::string prompt;
  Pace pace;
  bool echoes = false;
  bool ignoresCase = false;
  bool isLikeSim = false; // what no rule takes is answered as the built-in device does
  std::string state;      // at the start
  Values values;
  std::vector<Rule> rules;
  std::optional<std::uint64_t> silentAfter; // commands
  std::uint64_t bytesPerSecond = 0;         // of what it says; 0: no limit
};

struct FileAtStart {
  std::size_t line; // of the statement
  std::uint8_t id;
  std::uint8_t type;
  std::string bytes;
  std::string path; // that has the bytes instead, when it is not empty
};

struct StoreDescription {
  bool exists = true;
  std::uint32_t blocks = 8192;
  bool areFree = false; // so many beside those that the files at the start take
  std::string folder;   // relative to the device file
  std::chrono::milliseconds blockTime{0};
  std::vector<FileAtStart> files;
};

struct DeviceDescription {
  std::string name = "Simulated device";
  ConsoleDescription console;
  StoreDescription store;
  CableFaults cable;
  std::vector<Fault> faults;
  std::optional<std::uint32_t> seed;
};

} // namespace host
