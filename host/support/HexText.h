// Bytes as people look at them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

inline constexpr std::size_t kBytesInHexLine = 16;

// Up to 16 bytes: "63 72 63 20 31 0A    crc 1.".
std::string HexLine(std::string_view bytes);

// One byte as an escape of the script language: "\(x1B)".
std::string ByteEscape(char byte);

} // namespace host
