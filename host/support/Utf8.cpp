#include "host/support/Utf8.h"

#include <array>
#include <optional>

namespace host {
namespace {

// How many bytes the character in front takes; nothing when it is none. 0xFFFE and 0xFFFF are none: no text may have
// them.
std::optional<std::size_t> LengthOfCharacter(std::string_view text) {
  const auto byte = [&](std::size_t index) {
    return index < text.size() ? static_cast<unsigned>(static_cast<unsigned char>(text[index])) : 0U;
  };
  const unsigned first = byte(0);
  if (first < 0x80)
    return 1;
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  unsigned long code = first & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0U) != 0x80)
      return std::nullopt;
    code = code << 6U | (byte(i) & 0x3FU);
  }
  constexpr std::array<unsigned long, 5> kLeast = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  if (first < 0xC2 || first > 0xF4 || code < kLeast[length] || code > 0x10FFFF || isSurrogate ||
      (code & 0xFFFEU) == 0xFFFE)
    return std::nullopt;
  return length;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const auto length = LengthOfCharacter(text);
    if (!length)
      return false;
    text.remove_prefix(*length);
  }
  return true;
}

// Of the bytes 0x80 to 0x9F; the others are the same as in Unicode.
constexpr std::array<unsigned short, 32> kWindows1252 = {0x20AC, 0x81,   0x201A, 0x192,  0x201E, 0x2026, 0x2020, 0x2021,
                                                         0x2C6,  0x2030, 0x160,  0x2039, 0x152,  0x8D,   0x17D,  0x8F,
                                                         0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                         0x2DC,  0x2122, 0x161,  0x203A, 0x153,  0x9D,   0x17E,  0x178};

} // namespace

std::size_t CharacterLength(std::string_view text) {
  return LengthOfCharacter(text).value_or(1);
}

void AppendUtf8(std::string& text, unsigned code) {
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0U | code >> 6U);
    text += static_cast<char>(0x80U | (code & 0x3FU));
  } else {
    text += static_cast<char>(0xE0U | code >> 12U);
    text += static_cast<char>(0x80U | (code >> 6U & 0x3FU));
    text += static_cast<char>(0x80U | (code & 0x3FU));
  }
}

std::string ToUtf8(std::string_view bytes) {
  if (IsUtf8(bytes))
    return std::string(bytes);
  std::string text;
  for (const char c : bytes) {
    const unsigned byte = static_cast<unsigned char>(c);
    AppendUtf8(text, byte >= 0x80 && byte < 0xA0 ? kWindows1252[byte - 0x80] : byte);
  }
  return text;
}

} // namespace host
