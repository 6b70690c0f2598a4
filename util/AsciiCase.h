// Text without regard to the case of ASCII letters; every other byte counts as it is.
#pragma once

#include <algorithm>
#include <string_view>

inline char AsciiLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return AsciiLower(x) == AsciiLower(y); });
}
