#include "scriptrt/check/TextPlaces.h"

#include "script/source/Scanner.h"

#include <algorithm>
#include <array>
#include <cstdio>

std::uint64_t LineOf(std::string_view text, std::uint32_t position) {
  const std::string_view before = text.substr(0, position);
  return static_cast<std::uint64_t>(std::count(before.begin(), before.end(), '\n')) + 1;
}

// No token spans lines, so that one can begin at any of them.
std::uint32_t EndOfTokenBefore(std::string_view text, std::uint32_t position) {
  NameTable names;
  Scanner scanner(text, names);
  std::size_t lineEnd = position;
  while (lineEnd > 0) {
    const std::size_t feed = text.find_last_of('\n', lineEnd - 1);
    const std::size_t lineBegin = feed == std::string_view::npos ? 0 : feed + 1;
    std::uint32_t end = 0;
    for (auto at = static_cast<std::uint32_t>(lineBegin);;) {
      const Token token = scanner.Scan(at);
      if (token.kind == TokenKind::kEnd || token.begin >= lineEnd || token.begin >= position)
        break;
      end = std::max(token.end, token.begin + 1);
      at = end;
    }
    if (end != 0)
      return std::min(end, position);
    lineEnd = lineBegin == 0 ? 0 : lineBegin - 1;
  }
  return 0;
}

std::string Quoted(std::string_view bytes) {
  constexpr std::size_t kMost = 40;
  std::string quoted = "`";
  for (const char c : bytes.substr(0, kMost)) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte < 0x7F) {
      quoted += c;
      continue;
    }
    std::array<char, 8> code{};
    std::snprintf(code.data(), code.size(), "\\(x%02X)", byte);
    quoted += code.data();
  }
  return quoted + (bytes.size() > kMost ? "...`" : "`");
}
