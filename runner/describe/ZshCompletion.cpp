#include "runner/describe/Descriptions.h"

#include <map>

namespace {

// Within the quotation marks of the shell, and the brackets of a description.
std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\'')
      escaped += "'\\''";
    else if (c == '[' || c == ']' || c == ':' || c == '\\')
      escaped.append(1, '\\').append(1, c);
    else
      escaped += c;
  }
  return escaped;
}

// What completes a value: ":NAME:ACTION".
std::string Action(const host::OptionRow& row) {
  const std::string name = ":" + Escaped(row.argument.empty() ? row.name : row.argument) + ":";
  switch (KindOf(row)) {
  case ArgumentKind::kNone:
    return {};
  case ArgumentKind::kFile:
    return name + "_files";
  case ArgumentKind::kFolder:
    return name + "_files -/";
  case ArgumentKind::kChoice:
    return name + "(" + Escaped(row.choices) + ")";
  case ArgumentKind::kText:
    return name + " ";
  }
  return {};
}

// The words behind `_arguments`.
std::string Arguments(host::Command command) {
  std::string words = " '--help[print this and exit]'";
  for (const host::OptionRow* option : OptionsOf(command))
    words += std::string(" \\\n      '") + (option->IsRepeated() ? "*" : "") + option->name + "[" +
             Escaped(option->description) + "]" + Action(*option) + "'";
  for (const host::OptionRow* file : FilesOf(command))
    words += std::string(" \\\n      '") + (file->IsRepeated() ? "*" : "") + Action(*file) + "'";
  return words;
}

std::string Names(const std::map<std::string, std::string>& commands) {
  std::string names;
  for (const auto& [name, description] : commands)
    names += " '" + name + ":" + Escaped(description) + "'";
  return names;
}

} // namespace

std::string ZshCompletion(std::string_view program) {
  const std::string name(program);
  std::map<std::string, std::string> firsts;
  std::map<std::string, std::map<std::string, std::string>> groups;
  std::string cases;
  for (const host::CommandRow* row : NamedCommands(program)) {
    const std::size_t blank = row->name.find(' ');
    const std::string first(row->name.substr(0, blank));
    firsts.emplace(first, row->description);
    if (blank != std::string_view::npos)
      groups[first].emplace(row->name.substr(blank + 1), row->description);
    cases += "    ('" + std::string(row->name) + "') _arguments -S" + Arguments(row->command) + " ;;\n";
  }
  std::string text = "#compdef " + name + "\n# Completion of " + name +
                     " for zsh, made from its table of commands.\n_" + name + "() {\n  local command=run\n" +
                     "  local -a commands=(" + Names(firsts) + ")\n" +
                     "  if ((CURRENT == 2)) && [[ $words[2] != -* ]]; then\n"
                     "    _describe -t commands command commands\n"
                     "    _files\n"
                     "    return\n"
                     "  fi\n";
  for (const auto& [group, seconds] : groups)
    text += "  if [[ $words[2] == " + group + " ]]; then\n    commands=(" + Names(seconds) +
            ")\n"
            "    if ((CURRENT == 3)); then\n"
            "      _describe -t commands command commands\n"
            "      return\n"
            "    fi\n"
            "    words[2]=(\"$words[2] $words[3]\")\n"
            "    words[3]=()\n"
            "    ((CURRENT--))\n"
            "  fi\n";
  text += "  case $words[2] in\n";
  for (const host::CommandRow* row : NamedCommands(program))
    text += "    ('" + std::string(row->name) + "') command=$words[2]; shift words; ((CURRENT--)) ;;\n";
  return text + "  esac\n  case $command in\n" + cases + "  esac\n}\n_" + name + " \"$@\"\n";
}
