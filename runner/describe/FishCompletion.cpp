#include "runner/describe/Descriptions.h"

#include <algorithm>

namespace {

std::string Quoted(std::string_view text) {
  std::string quoted(1, '\'');
  for (const char c : text) {
    if (c == '\'' || c == '\\')
      quoted += '\\';
    quoted += c;
  }
  return quoted + '\'';
}

std::string Seen(const std::string& words) {
  return "__fish_seen_subcommand_from " + words;
}

// When a command has been named: all of its words. `run` is meant as long as no other one is.
std::string ConditionOf(std::string_view program, const host::CommandRow& row) {
  if (row.command == host::Command::kRun) {
    std::vector<std::string> others;
    for (const host::CommandRow* other : NamedCommands(program)) {
      const std::string word(other->name.substr(0, other->name.find(' ')));
      if (other != &row && (others.empty() || others.back() != word))
        others.push_back(word);
    }
    return "not " + Seen(Joined(others));
  }
  const std::size_t blank = row.name.find(' ');
  const std::string first = Seen(std::string(row.name.substr(0, blank)));
  return blank == std::string_view::npos ? first : first + "; and " + Seen(std::string(row.name.substr(blank + 1)));
}

std::string Action(const host::OptionRow& row) {
  switch (KindOf(row)) {
  case ArgumentKind::kNone:
    return {};
  case ArgumentKind::kFile:
    return " -r -F";
  case ArgumentKind::kFolder:
    return " -x -a '(__fish_complete_directories)'";
  case ArgumentKind::kChoice:
    return " -x -a " + Quoted(row.choices);
  case ArgumentKind::kText:
    return " -x";
  }
  return {};
}

std::string NameOf(const host::OptionRow& row) {
  return row.name.starts_with("--") ? " -l " + row.name.substr(2) : " -s " + row.name.substr(1);
}

} // namespace

std::string FishCompletion(std::string_view program) {
  const std::string name(program);
  const std::string begin = "complete -c " + name;
  std::string text = "# Completion of " + name + " for fish, made from its table of commands.\n";
  std::vector<std::string> groups;
  for (const host::CommandRow* row : NamedCommands(program)) {
    const std::size_t blank = row->name.find(' ');
    const std::string first(row->name.substr(0, blank));
    const std::string description = " -d " + Quoted(row->description) + "\n";
    if (blank == std::string_view::npos) {
      text += begin + " -n __fish_use_subcommand -a " + first + description;
      continue;
    }
    if (std::find(groups.begin(), groups.end(), first) == groups.end()) {
      groups.push_back(first);
      text += begin + " -n __fish_use_subcommand -a " + first + "\n";
    }
    const std::string second(row->name.substr(blank + 1));
    text += begin + " -f -n " + Quoted(Seen(first) + "; and not " + Seen(second)) + " -a " + second + description;
  }
  text += begin + " -l help -d 'print this and exit'\n" + begin +
          " -n __fish_use_subcommand -l version -d 'print the version and exit'\n";
  for (const host::CommandRow* row : NamedCommands(program)) {
    const std::string condition = " -n " + Quoted(ConditionOf(program, *row));
    for (const host::OptionRow* option : OptionsOf(row->command))
      text += begin + condition + NameOf(*option) + Action(*option) + " -d " + Quoted(option->description) + "\n";
    for (const host::OptionRow* file : FilesOf(row->command)) {
      if (KindOf(*file) == ArgumentKind::kChoice)
        text += begin + condition + " -f" + " -a " + Quoted(file->choices) + "\n";
    }
  }
  return text;
}
