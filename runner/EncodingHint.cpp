#include "runner/EncodingHint.h"

#include <algorithm>
#include <string>

namespace {

bool IsAscii(char c) {
  return static_cast<unsigned char>(c) < 0x80;
}

// English text in UTF-16 has a zero byte in every character.
bool IsUtf16(std::string_view script) {
  return script.starts_with("\xFF\xFE") || script.starts_with("\xFE\xFF") ||
         script.substr(0, 2).find('\0') != std::string_view::npos;
}

bool IsUtf8(std::string_view script) {
  int following = 0; // bytes that the character still needs
  for (const unsigned char byte : script) {
    const bool follows = (byte & 0xC0) == 0x80;
    if (follows != (following > 0) || byte >= 0xF8)
      return false;
    if (follows)
      --following;
    else if (byte >= 0xC0)
      following = byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : 1;
  }
  return following == 0;
}

// The position of the first byte that is wanted where it stands.
std::size_t FindByte(std::string_view script, bool (*isWanted)(char c, bool inText, bool inComment)) {
  bool inText = false;
  bool inComment = false;
  for (std::size_t i = 0; i < script.size(); ++i) {
    const char c = script[i];
    if (isWanted(c, inText, inComment))
      return i;
    if (inComment)
      inComment = c != '\n' && c != '\r';
    else if (inText && c == '\\')
      ++i; // an escape's letter, perhaps a quote
    else if (c == '"')
      inText = !inText;
    else
      inComment = c == '#' && !inText;
  }
  return std::string_view::npos;
}

bool EndsScript(char c, bool inText, bool) {
  return c == '\0' && !inText;
}

bool IsForeign(char c, bool, bool inComment) {
  return !IsAscii(c) && !inComment;
}

EncodingHint HintAt(std::string_view script, std::size_t position, const char* text) {
  const std::string_view before = script.substr(0, position);
  const auto line = static_cast<std::uint64_t>(std::count(before.begin(), before.end(), '\n')) + 1;
  return {text, line, position - (before.rfind('\n') + 1) + 1};
}

} // namespace

std::optional<EncodingHint> FindEncodingHint(std::string_view script) {
  if (IsUtf16(script))
    return HintAt(script, 0, "the script is saved as UTF-16; it must be 8-bit text");
  if (script.starts_with("\xEF\xBB\xBF"))
    return HintAt(script, 0, "the script begins with a byte-order mark; save it without one");
  if (const std::size_t end = FindByte(script, EndsScript); end != std::string_view::npos)
    return HintAt(script, end, "the script ends here, at a zero byte");
  const std::size_t position = FindByte(script, IsForeign);
  if (position == std::string_view::npos || !IsUtf8(script))
    return std::nullopt;
  return HintAt(script, position, "this character is saved in UTF-8; Windows reads its bytes in its own code page");
}
