#include "script/value/NumberText.h"

#include <charconv>

std::string DecimalText(std::uint64_t bits, DataType type) {
  char digits[20];
  char* const end = digits + sizeof digits;
  return {digits, IsSigned(type) ? std::to_chars(digits, end, static_cast<std::int64_t>(bits)).ptr
                                 : std::to_chars(digits, end, bits).ptr};
}

std::string HexadecimalText(std::uint64_t bits, DataType type) {
  if (!Is64Bit(type))
    bits = static_cast<std::uint32_t>(bits);
  std::string text;
  do {
    text.insert(text.begin(), "0123456789ABCDEF"[bits & 0xF]);
    bits >>= 4;
  } while (bits != 0);
  return text;
}
