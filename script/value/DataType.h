// The data types of the script language, by the codes that hosts use too.
#pragma once

#include <cstdint>

enum class DataType : std::uint32_t {
  kNone = 0, // not typed yet
  kUint32 = 1,
  kString = 2,
  kInt32 = 3,
  kUint64 = 4,
  kInt64 = 5,
  // What else a slot of the machine's stack can hold; no script and no host sees these.
  kReference = 6, // a variable elsewhere
  kFunction = 7,
  kAbsent = 8, // a result that nobody wants
};

constexpr bool IsNumeric(DataType type) {
  return type == DataType::kUint32 || type == DataType::kInt32 || type == DataType::kUint64 || type == DataType::kInt64;
}
constexpr bool IsSigned(DataType type) {
  return type == DataType::kInt32 || type == DataType::kInt64;
}
constexpr bool Is64Bit(DataType type) {
  return type == DataType::kUint64 || type == DataType::kInt64;
}

constexpr DataType NumericType(bool is64Bit, bool isSigned) {
  if (is64Bit)
    return isSigned ? DataType::kInt64 : DataType::kUint64;
  return isSigned ? DataType::kInt32 : DataType::kUint32;
}
