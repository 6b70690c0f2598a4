// The operators of the script language: their texts, their classes and their arithmetic.
#pragma once

#include "script/value/ScriptError.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

enum OperatorClassFlag : unsigned {
  kUnaryOperator = 1,
  kBinaryOperator = 2,
  kAssignmentOperator = 4,
};

// In the order in which the lexer tries them.
enum class Operator : std::uint8_t {
  kAssign,
  kAddAssign,
  kSubtractAssign,
  kMultiplyAssign,
  kDivideAssign,
  kRemainderAssign,
  kAndAssign,
  kOrAssign,
  kXorAssign,
  kShiftRightAssign,
  kShiftLeftAssign,
  kAdd,
  kSubtract,
  kNot,
  kInvert,
  kMultiply,
  kDivide,
  kRemainder,
  kAnd,
  kOr,
  kXor,
  kShiftLeft,
  kShiftRight,
  kEqual,
  kNotEqual,
  kLess,
  kGreater,
  kLessOrEqual,
  kGreaterOrEqual,
};
inline constexpr std::size_t kOperatorCount = 29;

// What an operator can be, as a set of the flags above.
unsigned OperatorClass(Operator op);
// How it is written.
std::string_view OperatorText(Operator op);
// The longest operator at the start of `text`, which is not empty; its length is 0 if there is none.
struct OperatorMatch {
  Operator op;
  std::size_t length;
};
OperatorMatch MatchOperator(std::string_view text);

bool IsComparison(Operator op);
// The binary operator inside a compound assignment ("+" of "+="). `op` is an assignment operator other than "=".
Operator BinaryOfAssignment(Operator op);

// An operand as the routines see it: a 64-bit pattern, widened by its own type, and whether that type is signed.
struct Operand {
  std::uint64_t bits;
  bool isSigned;
};

enum class ShiftTo : std::uint8_t { kLeft, kRight };
// The pattern shifted by a signed count: a negative one shifts the other way, 64 and more shift everything out.
std::uint64_t Shift(ShiftTo direction, Operand value, std::uint64_t count);
// Comparisons give 1 or 0. A zero divisor gives kDivisionByZero and leaves `result` as it was.
ScriptError ApplyBinary(Operator op, Operand left, Operand right, std::uint64_t* result);
std::uint64_t ApplyUnary(Operator op, std::uint64_t operand);
