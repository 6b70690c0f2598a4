#include "host/support/Escape.h"

#include "host/support/Text.h"

#include <optional>

namespace host {
namespace {

std::optional<unsigned> DigitValue(char c) {
  unsigned value = 0;
  if (!ParseNumber(std::string_view(&c, 1), value, 16))
    return std::nullopt;
  return value;
}

// Behind the opening parenthesis.
tl::expected<char, std::string> TakeNumber(std::string_view& text) {
  const std::size_t end = text.find(')');
  if (end == std::string_view::npos)
    return tl::unexpected<std::string>("the escape has no closing parenthesis");
  const std::string_view inside = text.substr(0, end);
  const char letter = inside.empty() ? ' ' : ToLowerAscii(inside.front());
  const int base = letter == 'x' ? 16 : letter == 'b' ? 2 : 10;
  const std::string_view digits = inside.substr(base == 10 ? 0 : 1);
  unsigned value = 0; // a letter alone is zero, as in scripts
  if (inside.empty() || (!digits.empty() && !ParseNumber(digits, value, base)) || value > 255)
    return tl::unexpected("the escape " + Quoted("\\(" + std::string(inside) + ")") + " is no byte (0 to 255)");
  text.remove_prefix(end + 1);
  return static_cast<char>(value);
}

} // namespace

tl::expected<char, std::string> TakeEscape(std::string_view& text) {
  if (text.empty())
    return tl::unexpected<std::string>("the escape is incomplete");
  const char c = text.front();
  text.remove_prefix(1);
  switch (c) {
  case '"':
  case '\\':
    return c;
  case 'n':
    return '\n';
  case 't':
    return '\t';
  case 'r':
    return '\r';
  case '(':
    return TakeNumber(text);
  default:
    if (const auto digit = DigitValue(c))
      return static_cast<char>(*digit);
    return tl::unexpected("there is no escape " + Quoted(std::string("\\") + c));
  }
}

} // namespace host
