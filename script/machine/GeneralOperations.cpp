// Operations on slots whose tags tell what they hold: the language's rules as CONXScriptVariable has them.
#include "script/machine/ScriptMachine.h"
#include "script/value/NumberRange.h"

namespace {

constexpr std::uint16_t kOperatorBits = 0xFF;

void ReleaseOwned(CONXScriptVariable& slot, bool isOwned) {
  if (isOwned)
    slot.Release();
}

} // namespace

DataType ScriptMachine::ReceiverOf(std::uint64_t k, CONXScriptVariable* base, std::uint32_t slot) const {
  if ((k & 0xFF) != kReceiverOfCall)
    return static_cast<DataType>(k);
  const auto call = static_cast<std::uint32_t>(k >> 32);
  const CONXScriptFunc& function = *m_program.callables[base[call].function];
  const std::size_t index = slot - call - CONXScriptProgramFunc::kFirstParameter;
  return index < function.GetParameterCount() ? function.GetParameter(index).type : DataType::kNone;
}

ScriptError ScriptMachine::BinaryGeneral(const Instruction& instruction, CONXScriptVariable* base) {
  CONXScriptVariable& left = base[instruction.b];
  CONXScriptVariable& right = base[instruction.c];
  const auto op = static_cast<Operator>(instruction.n & kOperatorBits);
  const DataType receiver = ReceiverOf(instruction.k, base, instruction.a);
  if (op == Operator::kAdd && left.type == DataType::kInt32 && right.type == DataType::kInt32 &&
      receiver == DataType::kNone) { // what recursive functions mostly do
    base[instruction.a].bits = NarrowedTo(DataType::kInt32, left.bits + right.bits);
    base[instruction.a].type = DataType::kInt32;
    return kScriptOk;
  }
  CONXScriptVariable result(receiver);
  if (const ScriptError error = result.ApplyBinaryOperator(op, left, right))
    return error;
  ReleaseOwned(left, (instruction.n & kOwnsLeft) != 0);
  ReleaseOwned(right, (instruction.n & kOwnsRight) != 0);
  base[instruction.a] = std::move(result);
  return kScriptOk;
}

ScriptError ScriptMachine::UnaryGeneral(const Instruction& instruction, CONXScriptVariable* base) {
  CONXScriptVariable result(ReceiverOf(instruction.k, base, instruction.a));
  const auto op = static_cast<Operator>(instruction.n & kOperatorBits);
  if (const ScriptError error = result.ApplyUnaryOperator(op, base[instruction.b]))
    return error;
  ReleaseOwned(base[instruction.b], (instruction.n & kOwnsLeft) != 0);
  base[instruction.a] = std::move(result);
  return kScriptOk;
}

ScriptError ScriptMachine::ConvertGeneral(const Instruction& instruction, CONXScriptVariable* base) {
  CONXScriptVariable result(ReceiverOf(instruction.k, base, instruction.a));
  if (const ScriptError error = result.Assign(base[instruction.b]))
    return error;
  ReleaseOwned(base[instruction.b], (instruction.n & kOwnsLeft) != 0);
  base[instruction.a] = std::move(result);
  return kScriptOk;
}
