#include "host/support/HexText.h"

#include <cstdio>

namespace host {

std::string HexLine(std::string_view bytes) {
  std::string hex, ascii;
  for (const char c : bytes) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02X ", static_cast<unsigned>(static_cast<unsigned char>(c)));
    hex += digits;
    ascii += c < ' ' || c > '~' ? '.' : c;
  }
  hex.resize(kBytesInHexLine * 3 + 1, ' ');
  return hex + ascii;
}

std::string ByteEscape(char byte) {
  char code[8];
  std::snprintf(code, sizeof code, "\\(x%02X)", static_cast<unsigned>(static_cast<unsigned char>(byte)));
  return code;
}

} // namespace host
