// Reads numbers from text as the C library's scan formats do, with the same answers on every system: leading white
// space and a sign are accepted, whatever follows the digits is ignored, values beyond 64 bits saturate.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

enum class NumberFormat {
  kUnsigned,    // decimal; a minus sign negates within 64 bits
  kSigned,      // decimal
  kHexadecimal, // unsigned; "0x" in front of the digits is accepted
};

// The 64-bit pattern; 32-bit formats use its low half. Nothing if no number stands there.
std::optional<std::uint64_t> ScanNumber(std::string_view text, NumberFormat format);
