#include "host/lineedit/LineLayout.h"

#include "host/support/Utf8.h"

#include <algorithm>
#include <vector>

namespace host {
namespace {

std::vector<std::string_view> Characters(std::string_view text) {
  std::vector<std::string_view> characters;
  for (std::size_t length = 0; !text.empty(); text.remove_prefix(length)) {
    length = CharacterLength(text);
    const bool isControl = static_cast<unsigned char>(text.front()) < 0x20 || text.front() == '\x7F';
    characters.push_back(isControl ? " " : text.substr(0, length));
  }
  return characters;
}

std::string Joined(const std::vector<std::string_view>& characters, std::size_t begin, std::size_t end) {
  std::string text;
  for (std::size_t i = begin; i < end; ++i)
    text += characters[i];
  return text;
}

} // namespace

LineLayout LayLine(std::string_view prefix, const LineBuffer& line, std::size_t columns) {
  columns = std::max<std::size_t>(columns, 2); // a character and the cursor
  const auto front = Characters(prefix);
  const auto typed = Characters(line.Text());
  const std::size_t cursor = Characters(std::string_view(line.Text()).substr(0, line.Cursor())).size();
  // The prefix gives way to the typed part, down to half of the row.
  const std::size_t room = columns - std::min(columns / 2, std::min(typed.size() + 1, columns));
  const std::size_t frontShown = std::min(front.size(), room);
  const std::size_t typedRoom = columns - frontShown; // with one for a cursor at the end
  const std::size_t begin = cursor < typedRoom ? 0 : cursor - typedRoom + 1;
  const std::size_t end = std::min(typed.size(), begin + typedRoom);
  LineLayout layout;
  layout.beforeCursor =
      Joined(front, front.size() - frontShown, front.size()) + Joined(typed, begin, std::min(cursor, end));
  layout.shown = layout.beforeCursor + Joined(typed, std::min(cursor, end), end);
  layout.columns = frontShown + end - begin;
  return layout;
}

} // namespace host
