#include "script/value/NumberText.h"

std::string DecimalText(std::uint64_t bits, DataType type) {
  return IsSigned(type) ? std::to_string(static_cast<std::int64_t>(bits)) : std::to_string(bits);
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
