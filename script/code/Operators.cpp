// Operators: what instruction computes them for which types of operands and receiver.
//
// The rules are those of CONXScriptVariable's operations. Where all types are known, an instruction computes the value
// in its final width; where they are not, a general instruction calls those operations.
#include "script/code/Compiler.h"
#include "script/value/NumberRange.h"

#include <utility>

namespace {

Op WithConstant(Op op, bool isConstant) {
  return static_cast<Op>(static_cast<std::uint16_t>(op) + (isConstant ? 1 : 0));
}

bool IsCommutative(Operator op) {
  switch (op) {
  case Operator::kAdd:
  case Operator::kMultiply:
  case Operator::kAnd:
  case Operator::kOr:
  case Operator::kXor:
    return true;
  default:
    return false;
  }
}

// The comparison as an instruction's value form, or kCount.
Op ComparisonOf(Operator op, bool isSigned) {
  switch (op) {
  case Operator::kEqual:
    return Op::kEqual;
  case Operator::kNotEqual:
    return Op::kNotEqual;
  case Operator::kLess:
    return isSigned ? Op::kLessSigned : Op::kLess;
  case Operator::kGreater:
    return isSigned ? Op::kGreaterSigned : Op::kGreater;
  case Operator::kLessOrEqual:
    return isSigned ? Op::kNotGreaterSigned : Op::kNotGreater;
  case Operator::kGreaterOrEqual:
    return isSigned ? Op::kNotLessSigned : Op::kNotLess;
  default:
    return Op::kCount;
  }
}

// With its operands exchanged.
Operator Mirrored(Operator op) {
  switch (op) {
  case Operator::kLess:
    return Operator::kGreater;
  case Operator::kGreater:
    return Operator::kLess;
  case Operator::kLessOrEqual:
    return Operator::kGreaterOrEqual;
  case Operator::kGreaterOrEqual:
    return Operator::kLessOrEqual;
  default:
    return op;
  }
}

// Of the three widths that an operation which wraps around comes in.
Op InWidthOf(DataType type, Op wide, Op int32, Op uint32) {
  if (Is64Bit(type))
    return wide;
  return IsSigned(type) ? int32 : uint32;
}

std::uint16_t OwnedFlags(const CodeOperand& left, const CodeOperand& right) {
  return static_cast<std::uint16_t>((left.isOwned ? kOwnsLeft : 0) | (right.isOwned ? kOwnsRight : 0));
}

} // namespace

// --- values

// The type of an expression that nothing else gives one; kNone when only a run can tell, or it fails.
DataType Compiler::StaticTypeOf(const PendingOperation& pending) const {
  const DataType left = pending.left.type;
  const DataType right = pending.right.type;
  switch (pending.kind) {
  case PendingOperation::Kind::kValue:
    return left;
  case PendingOperation::Kind::kUnary:
    return IsNumeric(left) ? left : DataType::kNone;
  case PendingOperation::Kind::kBinary:
    break;
  }
  if (IsNumeric(left) && IsNumeric(right))
    return ResultTypeOf(pending.op, left, right);
  if (left != DataType::kString || right != DataType::kString)
    return DataType::kNone;
  if (pending.op == Operator::kAdd)
    return DataType::kString;
  return pending.op == Operator::kEqual || pending.op == Operator::kNotEqual ? DataType::kUint32 : DataType::kNone;
}

// Whether a numeric operation on constants succeeds, and its value.
bool Compiler::IsKnown(const PendingOperation& pending, CodeOperand* value) const {
  if (pending.kind == PendingOperation::Kind::kValue || !pending.left.isConstant || !pending.left.IsNumber())
    return false;
  const CodeOperand& left = pending.left;
  const CodeOperand& right = pending.right;
  std::uint64_t bits = 0;
  if (pending.kind == PendingOperation::Kind::kUnary)
    bits = ApplyUnary(pending.op, left.bits);
  else if (!right.isConstant || !right.IsNumber() ||
           ApplyBinary(pending.op, {left.bits, IsSigned(left.type)}, {right.bits, IsSigned(right.type)}, &bits) !=
               kScriptOk)
    return false;
  *value = {};
  value->type = StaticTypeOf(pending);
  value->isConstant = true;
  value->bits = NarrowedTo(value->type, bits);
  return true;
}

// The value where it is, or in `slot`, which lies at or in front of whatever the operands own.
CodeOperand Compiler::ValueOf(const PendingOperation& pending, std::uint32_t slot) {
  if (pending.kind == PendingOperation::Kind::kValue)
    return pending.left;
  CodeOperand value;
  if (IsKnown(pending, &value))
    return value;
  value.type = StaticTypeOf(pending);
  if (m_top <= slot)
    SetTop(slot + 1);
  Receive(pending, {slot});
  SetTop(slot + 1);
  value.isOwned = true;
  value.slot = slot;
  return value;
}

// --- receivers

// Everything that fails, or whose types are not known, is left to the general instructions.
void Compiler::Receive(const PendingOperation& pending, const CodeReceiver& receiver) {
  const DataType given = StaticTypeOf(pending);
  const bool bothNumbers = IsNumeric(given) && (receiver.type == DataType::kNone || IsNumeric(receiver.type));
  const bool bothTexts =
      given == DataType::kString && (receiver.type == DataType::kNone || receiver.type == DataType::kString);
  const bool comparesTexts = pending.kind == PendingOperation::Kind::kBinary && pending.left.IsText();
  const bool isPlain =
      bothTexts ||
      (bothNumbers && (!comparesTexts || receiver.type == DataType::kNone || receiver.type == DataType::kUint32));
  if (receiver.call != 0 || !isPlain)
    return ReceiveGeneral(pending, receiver);
  if (m_top <= receiver.slot)
    SetTop(receiver.slot + 1);
  if (pending.kind == PendingOperation::Kind::kValue)
    return ReceiveValue(pending, receiver);
  if (bothTexts || comparesTexts)
    ReceiveTexts(pending, receiver);
  else if (pending.kind == PendingOperation::Kind::kUnary)
    ReceiveUnary(pending, receiver);
  else
    ReceiveBinary(pending, receiver);
  if (receiver.isTagged && bothNumbers)
    Emit(Op::kTag, receiver.slot, 0, 0, static_cast<std::uint16_t>(given));
}

void Compiler::ReceiveValue(const PendingOperation& pending, const CodeReceiver& receiver) {
  const CodeOperand& value = pending.left;
  const DataType type = receiver.type == DataType::kNone ? value.type : receiver.type;
  const auto tag = static_cast<std::uint16_t>(type);
  if (value.IsText()) {
    if (value.isConstant)
      EmitText(Op::kText, receiver.slot, 0, value.text);
    else if (!value.isOwned)
      Emit(Op::kCopy, receiver.slot, value.slot);
    else if (value.slot != receiver.slot)
      Emit(Op::kMoveText, receiver.slot, value.slot);
    return;
  }
  if (value.isConstant) {
    const std::uint64_t bits = NarrowedTo(type, value.bits);
    Emit(receiver.isTagged ? Op::kTaggedNumber : Op::kNumber, receiver.slot, 0, 0, receiver.isTagged ? tag : 0, bits);
    return;
  }
  if (receiver.isTagged)
    Emit(Op::kTaggedMove, receiver.slot, value.slot, 0, tag);
  else
    EmitNarrow(value.type, type, value.slot, receiver.slot);
}

void Compiler::ReceiveUnary(const PendingOperation& pending, const CodeReceiver& receiver) {
  const DataType type = receiver.type == DataType::kNone ? pending.left.type : receiver.type;
  EmitUnary(pending.op, type, pending.left, receiver.slot);
}

void Compiler::ReceiveBinary(const PendingOperation& pending, const CodeReceiver& receiver) {
  const DataType type = receiver.type == DataType::kNone ? StaticTypeOf(pending) : receiver.type;
  EmitNumeric(pending.op, type, pending.left, pending.right, receiver.slot, pending.place);
}

void Compiler::ReceiveTexts(const PendingOperation& pending, const CodeReceiver& receiver) {
  if (pending.op != Operator::kAdd)
    return EmitTextEqual(pending, receiver.slot);
  CodeOperand left = pending.left;
  CodeOperand right = pending.right;
  if (left.isConstant) {
    left.slot = InSlot(left);
    left.isOwned = true;
  }
  if (right.isConstant) {
    right.slot = InSlot(right);
    right.isOwned = true;
  }
  Emit(Op::kJoin, receiver.slot, left.slot, right.slot, OwnedFlags(left, right), 0, pending.place);
}

void Compiler::ReceiveGeneral(const PendingOperation& pending, const CodeReceiver& receiver) {
  const std::uint64_t k = receiver.call != 0 ? std::uint64_t{receiver.call} << 32 | kReceiverOfCall
                                             : static_cast<std::uint64_t>(receiver.type);
  if (m_top <= receiver.slot)
    SetTop(receiver.slot + 1); // what the operands need lies behind the receiver
  const CodeOperand left = Tagged(pending.left);
  if (pending.kind == PendingOperation::Kind::kValue) {
    Emit(Op::kConvertGeneral, receiver.slot, left.slot, 0, OwnedFlags(left, {}), k, pending.place);
    return;
  }
  const auto op = static_cast<std::uint16_t>(pending.op);
  if (pending.kind == PendingOperation::Kind::kUnary) {
    Emit(Op::kUnaryGeneral, receiver.slot, left.slot, 0, op | OwnedFlags(left, {}), k, pending.place);
    return;
  }
  const CodeOperand right = Tagged(pending.right);
  Emit(Op::kBinaryGeneral, receiver.slot, left.slot, right.slot, op | OwnedFlags(left, right), k, pending.place);
}

// --- numbers

void Compiler::EmitNarrow(DataType from, DataType to, std::uint32_t source, std::uint32_t slot) {
  if (Is64Bit(to) || from == to) {
    if (source != slot)
      Emit(Op::kMove, slot, source);
    return;
  }
  Emit(IsSigned(to) ? Op::kNarrowInt32 : Op::kNarrowUint32, slot, source);
}

void Compiler::EmitUnary(Operator op, DataType type, const CodeOperand& operand, std::uint32_t slot) {
  const std::uint32_t source = InSlot(operand);
  switch (op) {
  case Operator::kSubtract:
    Emit(Op::kNegate, slot, source);
    break;
  case Operator::kNot:
    Emit(Op::kNot, slot, source);
    return;
  case Operator::kInvert:
    Emit(Op::kInvert, slot, source);
    break;
  default: // "+"
    return EmitNarrow(operand.type, type, source, slot);
  }
  EmitNarrow(DataType::kInt64, type, slot, slot);
}

// `slot` := left op right, cut to `type`. What no line here names would be taken for an exclusive or.
static_assert(kOperatorCount == 29, "a new operator needs an instruction in EmitNumeric");
void Compiler::EmitNumeric(Operator op, DataType type, CodeOperand left, CodeOperand right, std::uint32_t slot,
                           std::uint32_t place) {
  const bool isSigned = IsSigned(left.type) || IsSigned(right.type);
  if (op == Operator::kDivide || op == Operator::kRemainder)
    return EmitDivision(op, type, left, right, slot, place);
  if (op == Operator::kShiftLeft || op == Operator::kShiftRight)
    return EmitShift(op, type, left, right, slot);
  if (left.isConstant && !right.isConstant && (IsCommutative(op) || IsComparison(op))) {
    op = Mirrored(op);
    std::swap(left, right);
  }
  const std::uint32_t source = InSlot(left);
  const std::uint32_t other = right.isConstant ? 0 : right.slot;
  if (const Op comparison = ComparisonOf(op, isSigned); comparison != Op::kCount) {
    Emit(WithConstant(comparison, right.isConstant), slot, source, other, 0, right.bits);
    return;
  }
  Op instruction = Op::kAdd;
  bool isNarrow = true;
  switch (op) {
  case Operator::kAdd:
    instruction = InWidthOf(type, Op::kAdd, Op::kAddInt32, Op::kAddUint32);
    break;
  case Operator::kSubtract:
    instruction = InWidthOf(type, Op::kSubtract, Op::kSubtractInt32, Op::kSubtractUint32);
    break;
  case Operator::kMultiply:
    instruction = InWidthOf(type, Op::kMultiply, Op::kMultiplyInt32, Op::kMultiplyUint32);
    break;
  default:
    instruction = op == Operator::kAnd ? Op::kAnd : op == Operator::kOr ? Op::kOr : Op::kXor;
    // Two of the same type stay what they are, and a small constant leaves nothing that does not fit.
    isNarrow = (left.type == type && right.type == type) ||
               (op == Operator::kAnd && right.isConstant && right.bits <= 0x7FFFFFFF);
  }
  Emit(WithConstant(instruction, right.isConstant), slot, source, other, 0, right.bits);
  if (!isNarrow)
    EmitNarrow(DataType::kNone, type, slot, slot);
}

void Compiler::EmitDivision(Operator op, DataType type, const CodeOperand& left, const CodeOperand& right,
                            std::uint32_t slot, std::uint32_t place) {
  const bool isSigned = IsSigned(left.type) || IsSigned(right.type);
  const Op divide = isSigned ? Op::kDivideSigned : Op::kDivide;
  const Op remainder = isSigned ? Op::kRemainderSigned : Op::kRemainder;
  const std::uint32_t source = InSlot(left);
  Emit(WithConstant(op == Operator::kDivide ? divide : remainder, right.isConstant), slot, source,
       right.isConstant ? 0 : right.slot, 0, right.bits, place);
  EmitNarrow(left.type == type && !isSigned ? type : DataType::kNone, type, slot, slot);
}

void Compiler::EmitShift(Operator op, DataType type, const CodeOperand& left, const CodeOperand& right,
                         std::uint32_t slot) {
  const bool toLeft = op == Operator::kShiftLeft;
  const bool isSigned = IsSigned(left.type);
  const std::uint32_t source = InSlot(left);
  if (right.isConstant && right.bits > 0 && right.bits < 64) {
    const Op toRight = isSigned ? Op::kShiftRightSignedBy : Op::kShiftRightBy;
    Emit(toLeft ? Op::kShiftLeftBy : toRight, slot, source, 0, 0, right.bits);
    return EmitNarrow(!toLeft && left.type == type ? type : DataType::kNone, type, slot, slot);
  }
  const Op shiftLeft = isSigned ? Op::kShiftLeftSigned : Op::kShiftLeft;
  const Op shiftRight = isSigned ? Op::kShiftRightSigned : Op::kShiftRight;
  Emit(WithConstant(toLeft ? shiftLeft : shiftRight, right.isConstant), slot, source, right.isConstant ? 0 : right.slot,
       0, right.bits);
  EmitNarrow(DataType::kNone, type, slot, slot);
}

// --- texts

void Compiler::EmitTextEqual(const PendingOperation& pending, std::uint32_t slot) {
  CodeOperand left = pending.left;
  CodeOperand right = pending.right;
  if (left.isConstant && !right.isConstant)
    std::swap(left, right);
  if (left.isConstant) {
    left.slot = InSlot(left);
    left.isOwned = true;
  }
  const auto flags =
      static_cast<std::uint16_t>(OwnedFlags(left, right) | (pending.op == Operator::kNotEqual ? kOpposite : 0));
  if (right.isConstant)
    EmitText(Op::kTextEqualConstant, slot, left.slot, right.text, flags);
  else
    Emit(Op::kTextEqual, slot, left.slot, right.slot, flags);
}

// --- conditions

void Compiler::EmitJumpUnless(const PendingOperation& pending, std::vector<std::uint32_t>* jumps) {
  constexpr auto kJump = static_cast<std::uint16_t>(CompareForm::kJump);
  const auto opposite = [](Op comparison, bool isConstant) {
    const auto number = static_cast<std::uint16_t>(comparison) / kCompareForms ^ 1;
    return static_cast<Op>(number * kCompareForms + kJump + (isConstant ? 1 : 0));
  };
  const bool isBinary = pending.kind == PendingOperation::Kind::kBinary;
  const bool isNumeric = isBinary && pending.left.IsNumber() && pending.right.IsNumber();
  if (isNumeric && !(pending.left.isConstant && pending.right.isConstant)) {
    CodeOperand left = pending.left;
    CodeOperand right = pending.right;
    Operator op = pending.op;
    if (left.isConstant) {
      op = Mirrored(op);
      if (IsComparison(op) || op == Operator::kAnd)
        std::swap(left, right);
    }
    const bool isSigned = IsSigned(left.type) || IsSigned(right.type);
    Op comparison = ComparisonOf(op, isSigned);
    // What `&` cuts off is nothing: 32-bit numbers have no upper bit in common, or bit 31 too.
    if (op == Operator::kAnd)
      comparison = Op::kCommonBits;
    if (comparison != Op::kCount && !left.isConstant) {
      jumps->push_back(
          Emit(opposite(comparison, right.isConstant), 0, left.slot, right.isConstant ? 0 : right.slot, 0, right.bits));
      return;
    }
  }
  const bool comparesText = isBinary && pending.left.IsText() && pending.right.IsText() && !pending.left.isConstant &&
                            pending.right.isConstant;
  if (comparesText && (pending.op == Operator::kEqual || pending.op == Operator::kNotEqual)) {
    const auto flags = static_cast<std::uint16_t>((pending.left.isOwned ? kOwnsLeft : 0) |
                                                  (pending.op == Operator::kEqual ? kOpposite : 0));
    jumps->push_back(Here());
    EmitText(Op::kJumpIfText, 0, pending.left.slot, pending.right.text, flags);
    return;
  }
  const CodeOperand value = ValueOf(pending, m_top);
  if (value.IsText()) {
    Fail(kTypeError, pending.place);
  } else if (value.IsDynamic()) {
    jumps->push_back(Emit(Op::kJumpUnlessDynamic, 0, value.slot, 0, 0, 0, pending.place));
  } else if (!value.isConstant) {
    jumps->push_back(Emit(opposite(Op::kNotEqual, true), 0, value.slot));
  } else if (value.bits == 0) {
    jumps->push_back(Emit(Op::kJump, 0));
  }
}
