#include "script/CONXScriptVariable.h"

#include "script/NumberRange.h"

#include <utility>

namespace {

const SharedText kNoText;

bool IsShift(Operator op) {
  return op == Operator::kShiftLeft || op == Operator::kShiftRight;
}

DataType ResultType(Operator op, DataType left, DataType right) {
  if (IsShift(op))
    return left;
  return NumericType(Is64Bit(left) || Is64Bit(right), IsSigned(left) || IsSigned(right));
}

} // namespace

void CONXScriptVariable::Reset(DataType type) {
  m_type = type;
  m_bits = 0;
  m_text.Clear();
  m_reference = nullptr;
}

ScriptError CONXScriptVariable::SetFromLiteral(const Literal& literal) {
  if (literal.error != kScriptOk)
    return literal.error;
  CONXScriptVariable* target = Target();
  target->m_type = literal.type;
  target->m_bits = literal.bits;
  target->m_text = literal.text;
  return kScriptOk;
}

ScriptError CONXScriptVariable::SetNumber(std::uint64_t value, DataType hint) {
  CONXScriptVariable* target = Target();
  if (target->m_type == DataType::kNone && IsNumeric(hint))
    target->m_type = hint;
  if (!IsNumeric(target->m_type))
    return kTypeError;
  target->m_bits = NarrowedTo(target->m_type, value);
  return kScriptOk;
}

std::uint64_t CONXScriptVariable::GetNumber() const {
  const CONXScriptVariable* target = Target();
  return IsNumeric(target->m_type) ? target->m_bits : 0;
}

ScriptError CONXScriptVariable::SetSharedText(SharedText text) {
  CONXScriptVariable* target = Target();
  if (target->m_type == DataType::kNone)
    target->m_type = DataType::kString;
  if (target->m_type != DataType::kString)
    return kTypeError;
  target->m_text = std::move(text);
  return kScriptOk;
}

const SharedText& CONXScriptVariable::GetSharedText() const {
  const CONXScriptVariable* target = Target();
  return target->m_type == DataType::kString ? target->m_text : kNoText;
}

ScriptError CONXScriptVariable::Assign(const CONXScriptVariable& source) {
  const DataType sourceType = source.GetType();
  if (GetType() == DataType::kNone)
    SetType(sourceType);
  switch (GetType()) {
  case DataType::kNone:
    return kScriptOk; // untyped from untyped
  case DataType::kString:
    if (sourceType != DataType::kString && sourceType != DataType::kNone)
      return kTypeError;
    return SetSharedText(source.GetSharedText());
  default:
    return sourceType == DataType::kString ? kTypeError : SetNumber(source.GetNumber(), DataType::kNone);
  }
}

ScriptError CONXScriptVariable::ApplyAssignment(Operator op, const CONXScriptVariable& source) {
  if (op == Operator::kAssign)
    return Assign(source);
  const DataType sourceType = source.GetType();
  if (sourceType == DataType::kNone)
    return kTypeError;
  if (GetType() == DataType::kNone)
    SetType(sourceType);
  if (GetType() == DataType::kString && sourceType == DataType::kString) {
    if (op != Operator::kAddAssign)
      return kSyntaxError;
    Target()->m_text.Append(SharedText(source.GetSharedText()).Bytes()); // a copy: the source may be this variable
    return kScriptOk;
  }
  if (!IsNumeric(GetType()) || !IsNumeric(sourceType))
    return kTypeError;
  std::uint64_t value = 0;
  const ScriptError error = ApplyBinary(BinaryOfAssignment(op), AsOperand(), source.AsOperand(), &value);
  return error != kScriptOk ? error : SetNumber(value, DataType::kNone);
}

ScriptError CONXScriptVariable::ApplyUnaryOperator(Operator op, const CONXScriptVariable& operand) {
  if (!IsNumeric(operand.GetType()))
    return kTypeError;
  return SetNumber(ApplyUnary(op, operand.GetNumber()), operand.GetType());
}

ScriptError CONXScriptVariable::ApplyBinaryOperator(Operator op, const CONXScriptVariable& left,
                                                    const CONXScriptVariable& right) {
  if (left.GetType() == DataType::kNone || right.GetType() == DataType::kNone)
    return kTypeError;
  if (left.GetType() == DataType::kString)
    return ApplyStringOperator(op, left, right);
  if (right.GetType() == DataType::kString)
    return kTypeError;
  std::uint64_t value = 0;
  const ScriptError error = ApplyBinary(op, left.AsOperand(), right.AsOperand(), &value);
  return error != kScriptOk ? error : SetNumber(value, ResultType(op, left.GetType(), right.GetType()));
}

// A number on the right counts as the empty text.
ScriptError CONXScriptVariable::ApplyStringOperator(Operator op, const CONXScriptVariable& left,
                                                    const CONXScriptVariable& right) {
  switch (op) {
  case Operator::kAdd: {
    if (GetType() != DataType::kNone && GetType() != DataType::kString)
      return kTypeError;
    SharedText joined = left.GetSharedText();
    joined.Append(right.GetText());
    return SetSharedText(std::move(joined));
  }
  case Operator::kEqual:
  case Operator::kNotEqual: {
    if (GetType() == DataType::kNone)
      SetType(DataType::kUint32);
    if (!IsNumeric(GetType()))
      return kTypeError;
    const bool equal = left.GetText() == right.GetText();
    // The outcome belongs to unsigned 32-bit variables; one of another number type keeps its value.
    return GetType() == DataType::kUint32 ? SetNumber(equal == (op == Operator::kEqual), DataType::kNone) : kScriptOk;
  }
  default:
    return kSyntaxError;
  }
}
