// The command table of a program as other programs want it: completions for shells, and a manual page.
#pragma once

#include "host/commandline/CommandTable.h"

#include <string>
#include <vector>

// Each is a whole file.
std::string BashCompletion(std::string_view program);
std::string ZshCompletion(std::string_view program);
std::string FishCompletion(std::string_view program);
// For `man`.
std::string ManualPage(std::string_view program);

// --- what they have in common

// The commands of the program that have a name.
std::vector<const host::CommandRow*> NamedCommands(std::string_view program);
// What describes the program itself.
const host::CommandRow& ProgramRow(std::string_view program);
// Without the files, in the order of the help.
std::vector<const host::OptionRow*> OptionsOf(host::Command command);
std::vector<const host::OptionRow*> FilesOf(host::Command command);

enum class ArgumentKind { kNone, kFile, kFolder, kChoice, kText };
// What an option takes, or a file is, as far as it can be completed.
ArgumentKind KindOf(const host::OptionRow& row);
// With blanks between.
std::string Joined(const std::vector<std::string>& words);
