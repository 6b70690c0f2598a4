// Numbers of the script language as text.
#pragma once

#include "script/value/DataType.h"

#include <cstdint>
#include <string>

// `bits` is the number widened to 64 bits by its type.
std::string DecimalText(std::uint64_t bits, DataType type);
// Upper case, without prefix or padding; 32-bit types give at most 8 digits.
std::string HexadecimalText(std::uint64_t bits, DataType type);
