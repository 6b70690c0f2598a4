#include "util/ScanNumber.h"

#include "util/HexDigit.h"

#include <limits>

namespace {

bool IsSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

// 16: no digit.
unsigned DigitValue(char c) {
  return HexDigitValue(c).value_or(16);
}

} // namespace

std::optional<std::uint64_t> ScanNumber(std::string_view text, NumberFormat format) {
  std::size_t i = 0;
  const auto at = [&](std::size_t index) { return index < text.size() ? text[index] : '\0'; };
  while (IsSpace(at(i)))
    ++i;
  const bool negative = at(i) == '-';
  if (negative || at(i) == '+')
    ++i;
  const unsigned base = format == NumberFormat::kHexadecimal ? 16 : 10;
  if (base == 16 && at(i) == '0' && (at(i + 1) | 0x20) == 'x' && DigitValue(at(i + 2)) < 16)
    i += 2;

  constexpr std::uint64_t kMax = std::numeric_limits<std::uint64_t>::max();
  std::uint64_t magnitude = 0;
  bool overflow = false;
  const std::size_t first = i;
  for (; DigitValue(at(i)) < base; ++i) {
    const unsigned digit = DigitValue(at(i));
    overflow = overflow || magnitude > (kMax - digit) / base;
    magnitude = overflow ? kMax : magnitude * base + digit;
  }
  if (i == first)
    return std::nullopt;
  if (format != NumberFormat::kSigned)
    return overflow ? kMax : negative ? 0 - magnitude : magnitude;
  constexpr auto kLargest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (magnitude > kLargest)
    return negative ? kLargest + 1 : kLargest;
  return negative ? 0 - magnitude : magnitude;
}
