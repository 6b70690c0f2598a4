// What the windows of the sample host remember from one start to the next, and how it stands in a file.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// Of a window on the screen, in pixels.
struct Place {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;

  bool operator==(const Place&) const = default;
};

// Texts that were used, the latest first.
using Recent = std::vector<std::string>;

struct Settings {
  std::map<std::string, Place> windows; // by the names that users know
  Recent channels;
  Recent scripts;

  bool operator==(const Settings&) const = default;
};

// Puts a text to the head of the others, the oldest of which may go. One that the file cannot hold is left out: empty,
// with control characters or blanks at its ends, or very long.
void Remember(Recent& recent, const std::string& text);
void Forget(Recent& recent, const std::string& text);

// The whole file, explained for those who open it.
std::string SettingsText(const Settings& settings);

struct ReadSettings {
  Settings settings;                 // whatever could be understood
  std::vector<std::size_t> badLines; // the other lines, counted from 1
  bool isForeign = false;            // there is something, and nothing of it is ours
};
// Takes files with line ends of either kind, that somebody has edited.
ReadSettings ParseSettings(std::string_view text);

} // namespace host
