// Assignment to variables.
#include "script/code/Compiler.h"
#include "script/value/NumberRange.h"

namespace {

// Whose low 32 bits depend on nothing but the low 32 bits of its operands.
bool WorksOnLowBits(Operator op) {
  switch (op) {
  case Operator::kAdd:
  case Operator::kSubtract:
  case Operator::kMultiply:
  case Operator::kAnd:
  case Operator::kOr:
  case Operator::kXor:
    return true;
  default:
    return false;
  }
}

} // namespace

void Compiler::Assign(const Declaration& target, Operator op, const PendingOperation& value) {
  const DataType type = TypeOf(target);
  const DataType given = StaticTypeOf(value);
  const bool isLocal = IsLocal(target);
  if (IsNumeric(type) && IsNumeric(given)) {
    if (isLocal)
      return AssignNumber(target, op, value, target.slot);
    const std::uint32_t slot = NewSlot();
    AssignNumber(target, op, value, slot);
    return EmitStore(target, slot);
  }
  if (isLocal && type == DataType::kString && given == DataType::kString)
    return AssignText(target.slot, op, value);
  AssignGeneral(target, op, value);
}

// The new value of the variable into `slot`, which is the variable's own when that can be reached directly.
void Compiler::AssignNumber(const Declaration& target, Operator op, const PendingOperation& value, std::uint32_t slot) {
  const DataType type = TypeOf(target);
  if (op != Operator::kAssign) {
    const std::uint32_t top = m_top;
    const CodeOperand right = ValueOf(value, top);
    return EmitNumeric(BinaryOfAssignment(op), type, LoadVariable(target), right, slot, value.place);
  }
  const DataType given = StaticTypeOf(value);
  if (CodeOperand known; IsKnown(value, &known)) {
    Emit(Op::kNumber, slot, 0, 0, 0, NarrowedTo(type, known.bits));
    return;
  }
  if (value.kind == PendingOperation::Kind::kValue) {
    if (value.left.isConstant)
      Emit(Op::kNumber, slot, 0, 0, 0, NarrowedTo(type, value.left.bits));
    else
      EmitNarrow(given, type, value.left.slot, slot);
    return;
  }
  if (value.kind == PendingOperation::Kind::kUnary) {
    EmitUnary(value.op, given, value.left, slot);
    return EmitNarrow(given, type, slot, slot);
  }
  if (!value.left.IsNumber()) { // texts are compared
    EmitTextEqual(value, slot);
    return;
  }
  const bool atOnce = Is64Bit(type) ? false : WorksOnLowBits(value.op);
  EmitNumeric(value.op, atOnce ? type : given, value.left, value.right, slot, value.place);
  if (!atOnce && !IsComparison(value.op))
    EmitNarrow(given, type, slot, slot);
}

void Compiler::AssignText(std::uint32_t variable, Operator op, const PendingOperation& value) {
  const bool isJoin = value.kind == PendingOperation::Kind::kBinary && value.right.IsText();
  CodeOperand text;
  bool appends = op == Operator::kAddAssign;
  if (op == Operator::kAssign && isJoin && !value.left.isConstant && value.left.slot == variable) {
    text = value.right; // v = v + …
    appends = true;
  } else {
    text = ValueOf(value, m_top);
  }
  if (op != Operator::kAssign && op != Operator::kAddAssign)
    return Fail(kSyntaxError, value.place);
  if (text.isConstant)
    EmitText(appends ? Op::kAppendConstant : Op::kAssignConstant, variable, 0, text.text, 0, value.place);
  else if (appends)
    Emit(Op::kAppend, variable, text.slot, 0, text.isOwned ? kOwnsLeft : 0, 0, value.place);
  else
    Emit(text.isOwned ? Op::kMoveText : Op::kAssignText, variable, text.slot);
}

// By the types that the slots tell.
void Compiler::AssignGeneral(const Declaration& target, Operator op, const PendingOperation& value) {
  const CodeOperand source = Tagged(ValueOf(value, m_top));
  const auto type = static_cast<std::uint16_t>(TypeOf(target));
  if (!IsLocal(target)) {
    const std::uint32_t reference = NewSlot();
    EmitReference(target, reference);
    Emit(Op::kAssignReferred, reference, source.slot, 0, static_cast<std::uint16_t>(op), source.isOwned ? 1 : 0,
         value.place);
  } else if (op == Operator::kAssign && source.IsDynamic()) {
    Emit(Op::kAssignDynamic, target.slot, source.slot, 0, type, 0, value.place);
  } else {
    if (IsNumeric(TypeOf(target)))
      Emit(Op::kTag, target.slot, 0, 0, type);
    Emit(Op::kAssignGeneral, target.slot, source.slot, 0, static_cast<std::uint16_t>(op), source.isOwned ? 1 : 0,
         value.place);
  }
}
