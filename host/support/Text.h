// Small helpers for text that a user typed.
#pragma once

#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>

namespace host {

inline char ToLowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return ToLowerAscii(x) == ToLowerAscii(y); });
}

inline std::string Quoted(std::string_view text) {
  std::string result(1, '"');
  result += text;
  result += '"';
  return result;
}

// The whole text as a number; false (and `value` as it was) when there is anything else or it does not fit.
template <class Number>
bool ParseNumber(std::string_view text, Number& value, int base = 10) {
  Number parsed{};
  const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), parsed, base);
  if (status != std::errc() || end != text.data() + text.size())
    return false;
  value = parsed;
  return true;
}

} // namespace host
