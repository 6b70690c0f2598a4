#include "script/value/CONXScriptVariable.h"

#include "script/value/NumberRange.h"

ScriptError CONXScriptVariable::SetNumber(std::uint64_t value, DataType hint) {
  CONXScriptVariable* variable = Target();
  if (variable->type == DataType::kNone && IsNumeric(hint))
    variable->type = hint;
  if (!IsNumeric(variable->type))
    return kTypeError;
  variable->bits = NarrowedTo(variable->type, value);
  return kScriptOk;
}

std::uint64_t CONXScriptVariable::GetNumber() const {
  const CONXScriptVariable* variable = Target();
  return IsNumeric(variable->type) ? variable->bits : 0;
}

ScriptError CONXScriptVariable::SetSharedText(SharedText shared) {
  CONXScriptVariable* variable = Target();
  if (variable->type == DataType::kNone) {
    variable->type = DataType::kString;
    variable->text = nullptr;
  }
  if (variable->type != DataType::kString)
    return kTypeError;
  ReleaseText(variable->text);
  variable->text = shared.Detach();
  return kScriptOk;
}

std::string_view CONXScriptVariable::GetText() const {
  const CONXScriptVariable* variable = Target();
  return ViewOf(variable->type == DataType::kString ? variable->text : nullptr);
}

SharedText CONXScriptVariable::GetSharedText() const {
  const CONXScriptVariable* variable = Target();
  return SharedText(variable->type == DataType::kString ? ShareText(variable->text) : nullptr);
}

ScriptError CONXScriptVariable::Assign(const CONXScriptVariable& source) {
  const DataType sourceType = source.GetType();
  CONXScriptVariable* variable = Target();
  if (variable->type == DataType::kNone) {
    if (sourceType == DataType::kNone)
      return kScriptOk; // untyped from untyped
    variable->Reset(sourceType);
  }
  if (variable->type != DataType::kString)
    return sourceType == DataType::kString ? kTypeError : SetNumber(source.GetNumber(), DataType::kNone);
  if (sourceType != DataType::kString && sourceType != DataType::kNone)
    return kTypeError;
  return SetSharedText(source.GetSharedText());
}

ScriptError CONXScriptVariable::ApplyAssignment(Operator op, const CONXScriptVariable& source) {
  if (op == Operator::kAssign)
    return Assign(source);
  const DataType sourceType = source.GetType();
  if (sourceType == DataType::kNone)
    return kTypeError;
  CONXScriptVariable* variable = Target();
  if (variable->type == DataType::kNone)
    variable->Reset(sourceType);
  if (variable->type == DataType::kString && sourceType == DataType::kString) {
    if (op != Operator::kAddAssign)
      return kSyntaxError;
    variable->text = AppendText(variable->text, source.GetText());
    return kScriptOk;
  }
  if (!IsNumeric(variable->type) || !IsNumeric(sourceType))
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
  const DataType leftType = left.GetType();
  const DataType rightType = right.GetType();
  if (leftType == DataType::kNone || rightType == DataType::kNone)
    return kTypeError;
  if (leftType == DataType::kString)
    return ApplyStringOperator(op, left, right);
  if (rightType == DataType::kString)
    return kTypeError;
  std::uint64_t value = 0;
  const ScriptError error = ApplyBinary(op, left.AsOperand(), right.AsOperand(), &value);
  return error != kScriptOk ? error : SetNumber(value, ResultTypeOf(op, leftType, rightType));
}

// A number on the right counts as the empty text.
ScriptError CONXScriptVariable::ApplyStringOperator(Operator op, const CONXScriptVariable& left,
                                                    const CONXScriptVariable& right) {
  const DataType wanted = GetType();
  switch (op) {
  case Operator::kAdd: {
    if (wanted != DataType::kNone && wanted != DataType::kString)
      return kTypeError;
    SharedText joined = left.GetSharedText();
    joined.Append(right.GetText());
    return SetSharedText(std::move(joined));
  }
  case Operator::kEqual:
  case Operator::kNotEqual: {
    if (wanted != DataType::kNone && !IsNumeric(wanted))
      return kTypeError;
    const bool equal = left.GetText() == right.GetText();
    // The outcome belongs to unsigned 32-bit variables; one of another number type keeps its value.
    if (wanted != DataType::kNone && wanted != DataType::kUint32)
      return kScriptOk;
    return SetNumber(equal == (op == Operator::kEqual), DataType::kUint32);
  }
  default:
    return kSyntaxError;
  }
}
