#include "script/value/Operators.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

struct OperatorEntry {
  std::string_view text;
  unsigned flags;
};

constexpr std::array<OperatorEntry, kOperatorCount> kOperators = {{
    {"=", kAssignmentOperator},
    {"+=", kAssignmentOperator},
    {"-=", kAssignmentOperator},
    {"*=", kAssignmentOperator},
    {"/=", kAssignmentOperator},
    {"%=", kAssignmentOperator},
    {"&=", kAssignmentOperator},
    {"|=", kAssignmentOperator},
    {"^=", kAssignmentOperator},
    {">>=", kAssignmentOperator},
    {"<<=", kAssignmentOperator},
    {"+", kUnaryOperator | kBinaryOperator},
    {"-", kUnaryOperator | kBinaryOperator},
    {"!", kUnaryOperator},
    {"~", kUnaryOperator},
    {"*", kBinaryOperator},
    {"/", kBinaryOperator},
    {"%", kBinaryOperator},
    {"&", kBinaryOperator},
    {"|", kBinaryOperator},
    {"^", kBinaryOperator},
    {"<<", kBinaryOperator},
    {">>", kBinaryOperator},
    {"==", kBinaryOperator},
    {"!=", kBinaryOperator},
    {"<", kBinaryOperator},
    {">", kBinaryOperator},
    {"<=", kBinaryOperator},
    {">=", kBinaryOperator},
}};
static_assert(kOperators[static_cast<std::size_t>(Operator::kGreaterOrEqual)].text == ">=");

// Shift counts are signed: a negative one shifts the other way. Counts of 64 and more shift everything out.
std::uint64_t ShiftLeft(std::uint64_t bits, std::uint64_t count) {
  return count < 64 ? bits << count : 0;
}

std::uint64_t ShiftRight(std::uint64_t bits, std::uint64_t count, bool arithmetic) {
  if (arithmetic)
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(bits) >> std::min<std::uint64_t>(count, 63));
  return count < 64 ? bits >> count : 0;
}

ScriptError Divide(Operator op, Operand left, Operand right, std::uint64_t* result) {
  if (right.bits == 0)
    return kDivisionByZero;
  const bool quotient = op == Operator::kDivide;
  if (!left.isSigned && !right.isSigned) {
    *result = quotient ? left.bits / right.bits : left.bits % right.bits;
    return kScriptOk;
  }
  const auto dividend = static_cast<std::int64_t>(left.bits);
  const auto divisor = static_cast<std::int64_t>(right.bits);
  if (divisor == -1) // the processor traps on the most negative value by -1; its wrapped quotient is itself
    *result = quotient ? 0 - left.bits : 0;
  else
    *result = static_cast<std::uint64_t>(quotient ? dividend / divisor : dividend % divisor);
  return kScriptOk;
}

bool IsLess(Operand left, Operand right) {
  if (left.isSigned || right.isSigned)
    return static_cast<std::int64_t>(left.bits) < static_cast<std::int64_t>(right.bits);
  return left.bits < right.bits;
}

} // namespace

unsigned OperatorClass(Operator op) {
  return kOperators[static_cast<std::size_t>(op)].flags;
}

std::string_view OperatorText(Operator op) {
  return kOperators[static_cast<std::size_t>(op)].text;
}

bool IsComparison(Operator op) {
  switch (op) {
  case Operator::kEqual:
  case Operator::kNotEqual:
  case Operator::kLess:
  case Operator::kGreater:
  case Operator::kLessOrEqual:
  case Operator::kGreaterOrEqual:
    return true;
  default:
    return false;
  }
}

// Every beginning of an operator is an operator itself, so the longest one at the start of the text is meant.
OperatorMatch MatchOperator(std::string_view text) {
  OperatorMatch match{Operator::kAssign, 0};
  for (std::size_t i = 0; i < kOperators.size(); ++i) {
    const std::string_view candidate = kOperators[i].text;
    if (candidate[0] == text[0] && candidate.size() > match.length && text.starts_with(candidate))
      match = {static_cast<Operator>(i), candidate.size()};
  }
  return match;
}

std::uint64_t Shift(ShiftTo direction, Operand value, std::uint64_t count) {
  const bool reversed = static_cast<std::int64_t>(count) < 0;
  if (reversed)
    count = 0 - count;
  return (direction == ShiftTo::kLeft) != reversed ? ShiftLeft(value.bits, count)
                                                   : ShiftRight(value.bits, count, value.isSigned);
}

Operator BinaryOfAssignment(Operator op) {
  static constexpr std::array kBinary = {
      Operator::kAdd, Operator::kSubtract, Operator::kMultiply, Operator::kDivide,     Operator::kRemainder,
      Operator::kAnd, Operator::kOr,       Operator::kXor,      Operator::kShiftRight, Operator::kShiftLeft};
  return kBinary[static_cast<std::size_t>(op) - static_cast<std::size_t>(Operator::kAddAssign)];
}

ScriptError ApplyBinary(Operator op, Operand left, Operand right, std::uint64_t* result) {
  switch (op) {
  case Operator::kAdd:
    *result = left.bits + right.bits;
    break;
  case Operator::kSubtract:
    *result = left.bits - right.bits;
    break;
  case Operator::kMultiply:
    *result = left.bits * right.bits;
    break;
  case Operator::kDivide:
  case Operator::kRemainder:
    return Divide(op, left, right, result);
  case Operator::kAnd:
    *result = left.bits & right.bits;
    break;
  case Operator::kOr:
    *result = left.bits | right.bits;
    break;
  case Operator::kXor:
    *result = left.bits ^ right.bits;
    break;
  case Operator::kShiftLeft:
    *result = Shift(ShiftTo::kLeft, left, right.bits);
    break;
  case Operator::kShiftRight:
    *result = Shift(ShiftTo::kRight, left, right.bits);
    break;
  case Operator::kEqual:
    *result = left.bits == right.bits;
    break;
  case Operator::kNotEqual:
    *result = left.bits != right.bits;
    break;
  case Operator::kLess:
    *result = IsLess(left, right);
    break;
  case Operator::kGreater:
    *result = IsLess(right, left);
    break;
  case Operator::kLessOrEqual:
    *result = !IsLess(right, left);
    break;
  case Operator::kGreaterOrEqual:
    *result = !IsLess(left, right);
    break;
  case Operator::kAssign:
  case Operator::kAddAssign:
  case Operator::kSubtractAssign:
  case Operator::kMultiplyAssign:
  case Operator::kDivideAssign:
  case Operator::kRemainderAssign:
  case Operator::kAndAssign:
  case Operator::kOrAssign:
  case Operator::kXorAssign:
  case Operator::kShiftRightAssign:
  case Operator::kShiftLeftAssign:
  case Operator::kNot:
  case Operator::kInvert:
    return kSyntaxError;
  }
  return kScriptOk;
}

std::uint64_t ApplyUnary(Operator op, std::uint64_t operand) {
  switch (op) {
  case Operator::kSubtract:
    return 0 - operand;
  case Operator::kNot:
    return operand == 0;
  case Operator::kInvert:
    return ~operand;
  default: // "+"; the callers let no other operator through
    return operand;
  }
}
