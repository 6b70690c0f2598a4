#include "runner/describe/Descriptions.h"

#include <algorithm>
#include <map>

namespace {

// What stands in front of a word decides what it is: the value of an option, a command, or what a command takes.
constexpr const char* kBegin = R"(# Completion of @ for bash, made from its table of commands.
_@() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=run options words
  case ${COMP_WORDS[1]} in
)";

std::string FirstWord(const host::CommandRow& row) {
  return std::string(row.name.substr(0, row.name.find(' ')));
}

std::string SecondWord(const host::CommandRow& row) {
  const std::size_t blank = row.name.find(' ');
  return blank == std::string_view::npos ? std::string() : std::string(row.name.substr(blank + 1));
}

// The first words of all commands, each with the words that may follow it.
std::map<std::string, std::vector<std::string>> Groups(std::string_view program) {
  std::map<std::string, std::vector<std::string>> groups;
  for (const host::CommandRow* row : NamedCommands(program)) {
    std::vector<std::string>& seconds = groups[FirstWord(*row)];
    if (const std::string second = SecondWord(*row); !second.empty())
      seconds.push_back(second);
  }
  return groups;
}

// "    NAME | NAME) DO ;;"
void AddCase(std::string& text, const std::vector<std::string>& names, const std::string& action) {
  if (names.empty())
    return;
  text += "    ";
  for (std::size_t i = 0; i < names.size(); ++i)
    text += (i == 0 ? "" : " | ") + names[i];
  text += ") " + action + " ;;\n";
}

// The options whose values are of a kind, once each.
std::vector<std::string> NamesOfKind(std::string_view program, ArgumentKind kind) {
  std::vector<std::string> names;
  for (const host::CommandRow* row : NamedCommands(program)) {
    for (const host::OptionRow* option : OptionsOf(row->command)) {
      if (KindOf(*option) == kind && std::find(names.begin(), names.end(), option->name) == names.end())
        names.push_back(option->name);
    }
  }
  return names;
}

void AddCommands(std::string& text, std::string_view program) {
  std::vector<std::string> alone;
  for (const auto& [first, seconds] : Groups(program)) {
    if (seconds.empty())
      alone.push_back(first);
    else
      AddCase(text, {first}, "command=\"" + first + " ${COMP_WORDS[2]}\"");
  }
  AddCase(text, alone, "command=${COMP_WORDS[1]}");
  text += "  esac\n  case $before in\n";
}

void AddValues(std::string& text, std::string_view program) {
  AddCase(text, NamesOfKind(program, ArgumentKind::kFile), "mapfile -t COMPREPLY < <(compgen -f -- \"$word\"); return");
  AddCase(text, NamesOfKind(program, ArgumentKind::kFolder),
          "mapfile -t COMPREPLY < <(compgen -d -- \"$word\"); return");
  AddCase(text, NamesOfKind(program, ArgumentKind::kText), "return");
  for (const std::string& name : NamesOfKind(program, ArgumentKind::kChoice)) {
    for (const host::OptionRow& option : host::Options()) {
      if (option.name == name)
        AddCase(text, {name}, "words=\"" + option.choices + "\"");
    }
  }
  text += "  esac\n  case $command in\n";
}

void AddOptions(std::string& text, std::string_view program) {
  for (const host::CommandRow* row : NamedCommands(program)) {
    std::string options = "--help";
    for (const host::OptionRow* option : OptionsOf(row->command))
      options += " " + option->name;
    std::string action = "options=\"" + options + "\"";
    for (const host::OptionRow* file : FilesOf(row->command)) {
      if (KindOf(*file) == ArgumentKind::kChoice)
        action += " words=\"" + file->choices + "\"";
    }
    AddCase(text, {"\"" + std::string(row->name) + "\""}, action);
  }
  text += "  esac\n";
}

// The names of commands where they may stand.
void AddNames(std::string& text, std::string_view program) {
  std::vector<std::string> firsts;
  for (const auto& [first, seconds] : Groups(program)) {
    firsts.push_back(first);
    if (!seconds.empty())
      text += "  ((COMP_CWORD == 2)) && [[ $before == " + first + " ]] && words=\"" + Joined(seconds) + "\"\n";
  }
  text += "  ((COMP_CWORD == 1)) && words=\"" + Joined(firsts) + "\" options+=\" --version\"\n";
}

} // namespace

std::string BashCompletion(std::string_view program) {
  std::string text = kBegin;
  for (std::size_t at = 0; (at = text.find('@', at)) != std::string::npos; at += program.size())
    text.replace(at, 1, program);
  AddCommands(text, program);
  AddValues(text, program);
  AddOptions(text, program);
  AddNames(text, program);
  text += "  if [[ $word == -* ]]; then\n"
          "    mapfile -t COMPREPLY < <(compgen -W \"$options\" -- \"$word\")\n"
          "  elif ((COMP_CWORD == 1)); then\n"
          "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -f -- \"$word\")\n"
          "  elif [[ $words ]]; then\n"
          "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$word\")\n"
          "  else\n"
          "    mapfile -t COMPREPLY < <(compgen -f -- \"$word\")\n"
          "  fi\n"
          "}\n";
  const std::string name(program);
  return text + "complete -o filenames -F _" + name + " " + name + "\n";
}
