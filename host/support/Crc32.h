// CRC-32 as ISO 3309 and zip files have it (reflected polynomial EDB88320).
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace host {

inline std::uint32_t Crc32(std::string_view bytes) {
  static constexpr auto kTable = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
      std::uint32_t value = i;
      for (int bit = 0; bit < 8; ++bit)
        value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320U : 0U);
      table[i] = value;
    }
    return table;
  }();
  std::uint32_t crc = 0xFFFFFFFFU;
  for (const char c : bytes)
    crc = (crc >> 8) ^ kTable[(crc ^ static_cast<unsigned char>(c)) & 0xFF];
  return ~crc;
}

} // namespace host
