// Hexadecimal digits as people type them.
#pragma once

#include <optional>

// Nothing for what is no digit, of either case.
inline std::optional<unsigned> HexDigitValue(char c) {
  if (c >= '0' && c <= '9')
    return static_cast<unsigned>(c - '0');
  if (c >= 'A' && c <= 'F')
    return static_cast<unsigned>(c - 'A') + 10;
  if (c >= 'a' && c <= 'f')
    return static_cast<unsigned>(c - 'a') + 10;
  return std::nullopt;
}
