#include "runner/describe/Descriptions.h"

#include <algorithm>

std::vector<const host::CommandRow*> NamedCommands(std::string_view program) {
  std::vector<const host::CommandRow*> commands;
  for (const host::CommandRow& row : host::Commands()) {
    if (row.program == program && !row.name.empty())
      commands.push_back(&row);
  }
  return commands;
}

const host::CommandRow& ProgramRow(std::string_view program) {
  const auto commands = host::Commands();
  return *std::find_if(commands.begin(), commands.end(),
                       [&](const host::CommandRow& row) { return row.program == program && row.name.empty(); });
}

namespace {

std::vector<const host::OptionRow*> RowsOf(host::Command command, bool areOptions) {
  std::vector<const host::OptionRow*> rows;
  for (const host::OptionRow& row : host::Options()) {
    if (row.IsOf(command) && row.IsOption() == areOptions)
      rows.push_back(&row);
  }
  return rows;
}

} // namespace

std::vector<const host::OptionRow*> OptionsOf(host::Command command) {
  return RowsOf(command, true);
}

std::vector<const host::OptionRow*> FilesOf(host::Command command) {
  return RowsOf(command, false);
}

ArgumentKind KindOf(const host::OptionRow& row) {
  if (!row.choices.empty())
    return ArgumentKind::kChoice;
  if (row.argument.empty())
    return row.IsOption() ? ArgumentKind::kNone : row.name == "TEXT" ? ArgumentKind::kText : ArgumentKind::kFile;
  return row.argument == "FILE"     ? ArgumentKind::kFile
         : row.argument == "FOLDER" ? ArgumentKind::kFolder
                                    : ArgumentKind::kText;
}

std::string Joined(const std::vector<std::string>& words) {
  std::string joined;
  for (const std::string& word : words)
    joined += (joined.empty() ? "" : " ") + word;
  return joined;
}
