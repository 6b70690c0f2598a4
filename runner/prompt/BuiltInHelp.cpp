#include "runner/prompt/BuiltInHelp.h"

#include "host/support/Text.h"

#include <algorithm>
#include <sstream>
#include <vector>

namespace {

constexpr std::size_t kWidth = 78;
constexpr std::string_view kHeading = "### ";

// A row of a table, or a paragraph that begins with a call.
struct Entry {
  std::string heading;
  std::vector<std::string> names;
  std::string calls;
  std::string description;
};

void Replace(std::string& text, std::string_view what, std::string_view by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
    text.replace(at, what.size(), by);
}

// Without marks, and a link as its text.
std::string Plain(std::string text) {
  for (std::size_t link = 0; (link = text.find("](", link)) != std::string::npos;) {
    const std::size_t begin = text.rfind('[', link);
    const std::size_t end = text.find(')', link);
    if (begin == std::string::npos || end == std::string::npos)
      break;
    text = text.substr(0, begin) + text.substr(begin + 1, link - begin - 1) + text.substr(end + 1);
    link = begin;
  }
  Replace(text, "`", "");
  Replace(text, "**", "");
  Replace(text, "\xE2\x80\xA6", "...");
  return text;
}

// The names in a text's code marks, with or without parameters behind them.
std::vector<std::string> NamesIn(const std::string& text) {
  std::vector<std::string> names;
  for (std::size_t begin = text.find('`'); begin != std::string::npos;) {
    const std::size_t end = text.find('`', begin + 1);
    if (end == std::string::npos)
      break;
    const std::string code = text.substr(begin + 1, end - begin - 1);
    names.push_back(code.substr(0, code.find('(')));
    begin = text.find('`', end + 1);
  }
  return names;
}

Entry MakeEntry(const std::string& heading, const std::string& calls, const std::string& description) {
  return {heading, NamesIn(calls), Plain(calls), Plain(description)};
}

// "| CALLS | DESCRIPTION |"
Entry EntryOfRow(const std::string& heading, const std::string& row) {
  const std::size_t middle = row.find(" | ");
  return MakeEntry(heading, row.substr(2, middle - 2), row.substr(middle + 3, row.rfind(" |") - middle - 3));
}

std::vector<Entry> ReadPage() {
  std::vector<Entry> entries;
  std::istringstream page(kLanguagePage);
  std::string heading;
  std::string line;
  while (std::getline(page, line) && line != "## Names that are there from the start") {
  }
  while (std::getline(page, line) && !line.starts_with("## ")) {
    if (line.starts_with(kHeading)) {
      heading = line.substr(kHeading.size());
    } else if (line.starts_with("| `") && line.find('(') < line.find(" | ")) {
      entries.push_back(EntryOfRow(heading, line));
    } else if (line.starts_with("`") && line.find('(') < line.find('`', 1)) {
      const std::string call = line.substr(0, line.find('`', 1) + 1);
      std::string paragraph = line;
      while (std::getline(page, line) && !line.empty())
        paragraph += " " + line;
      entries.push_back(MakeEntry(heading, call, paragraph));
    }
  }
  return entries;
}

const std::vector<Entry>& Entries() {
  static const std::vector<Entry> entries = ReadPage();
  return entries;
}

// With a margin of two blanks.
std::string Wrapped(const std::string& text) {
  std::string lines;
  std::string line;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    if (!line.empty() && line.size() + 1 + word.size() > kWidth - 2) {
      lines += "  " + line + "\n";
      line.clear();
    }
    line += (line.empty() ? "" : " ") + word;
  }
  return lines + "  " + line + "\n";
}

} // namespace

std::string ListBuiltIns() {
  std::string list;
  std::string names;
  const std::vector<Entry>& entries = Entries();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    for (const std::string& name : entries[i].names)
      names += " " + name;
    if (i + 1 == entries.size() || entries[i + 1].heading != entries[i].heading) {
      list += entries[i].heading + "\n" + Wrapped(names);
      names.clear();
    }
  }
  return list;
}

std::string HelpForBuiltIn(std::string_view name) {
  std::string help;
  for (const Entry& entry : Entries()) {
    const auto isIt = [&](const std::string& each) { return host::EqualIgnoringCase(each, name); };
    if (std::any_of(entry.names.begin(), entry.names.end(), isIt))
      help += entry.calls + "\n" + Wrapped(entry.description);
  }
  return help;
}
