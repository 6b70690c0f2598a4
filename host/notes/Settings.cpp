#include "host/notes/Settings.h"

#include "host/support/Text.h"

#include <algorithm>
#include <array>
#include <optional>

namespace host {
namespace {

constexpr std::size_t kMostRecent = 10;
constexpr std::size_t kMostWindows = 100;
constexpr std::size_t kLongest = 1000;
constexpr int kFarthest = 100000; // pixels, of what can be meant as a place

constexpr std::string_view kHeading =
    "; What ondhost remembers from one start to the next. Edit it or delete it as you like.\r\n"
    "; A window is LEFT TOP WIDTH HEIGHT; of channels and scripts, the latest come first.\r\n";
constexpr std::string_view kWindows = "windows", kChannels = "channels", kScripts = "scripts";
constexpr std::string_view kChannel = "channel", kScript = "script";

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  return first == std::string_view::npos ? std::string_view()
                                         : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool CanStandInFile(std::string_view text) {
  const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; };
  return !text.empty() && text.size() <= kLongest && Trimmed(text) == text &&
         std::none_of(text.begin(), text.end(), isControl);
}

// "10 20 300 200".
std::optional<Place> ParsePlace(std::string_view text) {
  std::array<int, 4> numbers{};
  for (int& number : numbers) {
    text = Trimmed(text);
    const std::string_view word = text.substr(0, text.find_first_of(" \t"));
    if (!ParseNumber(word, number) || number < -kFarthest || number > kFarthest)
      return std::nullopt;
    text.remove_prefix(word.size());
  }
  if (!text.empty() || numbers[2] <= 0 || numbers[3] <= 0)
    return std::nullopt;
  return Place{numbers[0], numbers[1], numbers[2], numbers[3]};
}

void AddOlder(Recent& recent, std::string_view text) {
  const bool isKnown = std::find(recent.begin(), recent.end(), text) != recent.end();
  if (!isKnown && recent.size() < kMostRecent)
    recent.emplace_back(text);
}

// False: such a line does not belong into the section.
bool TakeLine(std::string_view section, std::string_view key, std::string_view value, Settings& settings) {
  if (section == kWindows) {
    const auto place = ParsePlace(value);
    if (!place || settings.windows.size() >= kMostWindows)
      return false;
    settings.windows.insert_or_assign(std::string(key), *place);
    return true;
  }
  const bool isChannel = section == kChannels && EqualIgnoringCase(key, kChannel);
  const bool isScript = section == kScripts && EqualIgnoringCase(key, kScript);
  if ((!isChannel && !isScript) || !CanStandInFile(value))
    return false;
  AddOlder(isChannel ? settings.channels : settings.scripts, value);
  return true;
}

// The section that a line begins; empty when it is none of ours.
std::string_view SectionOf(std::string_view line) {
  if (line.size() < 2 || line.back() != ']')
    return {};
  const std::string_view name = Trimmed(line.substr(1, line.size() - 2));
  for (const std::string_view known : {kWindows, kChannels, kScripts}) {
    if (EqualIgnoringCase(name, known))
      return known;
  }
  return {};
}

void AppendRecent(std::string& text, std::string_view section, std::string_view key, const Recent& recent) {
  text.append("\r\n[").append(section).append("]\r\n");
  for (const std::string& each : recent)
    text.append(key).append(" = ").append(each).append("\r\n");
}

} // namespace

void Remember(Recent& recent, const std::string& text) {
  if (!CanStandInFile(text))
    return;
  Forget(recent, text);
  recent.insert(recent.begin(), text);
  recent.resize(std::min(recent.size(), kMostRecent));
}

void Forget(Recent& recent, const std::string& text) {
  recent.erase(std::remove(recent.begin(), recent.end(), text), recent.end());
}

std::string SettingsText(const Settings& settings) {
  std::string text(kHeading);
  text.append("\r\n[").append(kWindows).append("]\r\n");
  for (const auto& [name, place] : settings.windows) {
    text += name + " =";
    for (const int number : {place.left, place.top, place.width, place.height})
      text += " " + std::to_string(number);
    text += "\r\n";
  }
  AppendRecent(text, kChannels, kChannel, settings.channels);
  AppendRecent(text, kScripts, kScript, settings.scripts);
  return text;
}

ReadSettings ParseSettings(std::string_view text) {
  ReadSettings read;
  constexpr std::string_view kMark = "\xEF\xBB\xBF"; // some editors put it in front
  if (text.starts_with(kMark))
    text.remove_prefix(kMark.size());
  bool hasSection = false;
  std::string_view section;
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = Trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.empty() || line.front() == ';' || line.front() == '#')
      continue;
    if (line.front() == '[') {
      section = SectionOf(line);
      hasSection = hasSection || !section.empty();
      if (section.empty())
        read.badLines.push_back(number);
      continue;
    }
    const std::size_t equals = std::min(line.find('='), line.size());
    const std::string_view value = Trimmed(line.substr(std::min(equals + 1, line.size())));
    if (equals == line.size() || !TakeLine(section, Trimmed(line.substr(0, equals)), value, read.settings))
      read.badLines.push_back(number);
  }
  read.isForeign = !hasSection && !read.badLines.empty();
  return read;
}

} // namespace host
