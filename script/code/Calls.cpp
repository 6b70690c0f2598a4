// Calls: the result's slot, the frame around the callee, the arguments, one behind the other on top of the frame.
#include "script/code/Compiler.h"

#include <algorithm>
#include <span>

namespace {
constexpr std::uint32_t kFirstArgument = CONXScriptProgramFunc::kFirstParameter;
}

std::uint32_t Compiler::BeginCall() {
  const std::uint32_t call = m_top;
  SetTop(call + kFirstArgument);
  return call;
}

CodeOperand Compiler::EndCall(std::uint32_t call, DataType type, Wanted wanted) {
  SetTop(wanted == Wanted::kResult ? call + 1 : call);
  CodeOperand result;
  result.type = type;
  result.isOwned = true;
  result.slot = call;
  return result;
}

// Evaluates the arguments of the call, or conversion, at `at`; leaves their number. What a value argument is given to
// is called with its slot, its chain and the place of its first token, a reference with its slot and node.
template <typename Value, typename Reference>
std::uint32_t Compiler::ForEachArgument(NodeIndex at, std::uint32_t call, Value&& value, Reference&& reference,
                                        const PreparedArguments& prepared) {
  const std::uint32_t first = call + kFirstArgument;
  const auto take = [&](std::uint32_t slot, NodeIndex chain, std::uint32_t place) {
    SetTop(slot);
    value(slot, chain, place);
    FailWhereCut();
  };
  if (NodeAt(at).kind == NodeKind::kConvert) {
    const Scanner& scanner = m_program.scanner;
    take(first, at + 1, scanner.StartBehind(scanner.StartBehind(NodeAt(at).place)));
    return 1;
  }
  std::uint32_t slot = first;
  at = prepared.count == 0 ? at + 1 : prepared.behind;
  for (std::size_t i = 0; i < prepared.count; ++i, ++slot) {
    PendingOperation operand;
    operand.left = prepared.operands[i];
    SetTop(slot + 1);
    Receive(operand, {.slot = slot, .isTagged = true});
  }
  for (; NodeAt(at).kind != NodeKind::kArgumentsEnd; ++slot) {
    if (NodeAt(at).kind == NodeKind::kReference) {
      SetTop(slot + 1);
      reference(slot, NodeAt(at));
      ++at;
    } else {
      take(slot, at + 1, NodeAt(at).place);
      at = NodeAt(at + 1).value;
    }
  }
  return slot - first;
}

namespace {

// Where the closing parenthesis is.
std::uint32_t ClosingPlace(const ScriptProgram& program, NodeIndex at) {
  const Node& node = program.nodes[at];
  return node.kind == NodeKind::kConvert ? program.nodes[at + 1].place : program.nodes[node.end - 1].place;
}

} // namespace

CodeOperand Compiler::CompileCall(const Declaration& callee, NodeIndex at, Wanted wanted) {
  if (callee.kind == DeclarationKind::kFunctionParameter)
    return CompileDynamicCall(callee, at, wanted);
  CONXScriptFunc& function = *m_program.callables[callee.slot];
  if (callee.body == 0)
    return CompileBuiltInCall(function, at, wanted);
  return CompileProgramCall(callee, static_cast<CONXScriptProgramFunc&>(function), at, wanted);
}

// A reference to a variable (true) or a function.
bool Compiler::CompileReference(const Node& node, std::uint32_t slot) {
  const Declaration& named = Resolve(node.value);
  if (named.IsVariable())
    EmitReference(named, slot);
  else
    EmitFunction(named, slot);
  return named.IsVariable();
}

CodeOperand Compiler::CompileProgramCall(const Declaration& callee, CONXScriptProgramFunc& function, NodeIndex at,
                                         Wanted wanted) {
  const std::uint32_t call = BeginCall();
  const std::uint32_t first = call + kFirstArgument;
  bool hasReferences = false;
  const auto value = [&](std::uint32_t slot, NodeIndex chain, std::uint32_t place) {
    const bool isDeclared = slot - first < function.GetParameterCount();
    const ScriptParameter parameter = isDeclared ? function.GetParameter(slot - first) : ScriptParameter{};
    if (parameter.isFunction)
      return Fail(kTypeError, place);
    Receive(CompileChain(chain), {.slot = slot, .type = parameter.type, .isTagged = !isDeclared});
  };
  const auto reference = [&](std::uint32_t slot, const Node& node) {
    const Declaration& named = Resolve(node.value);
    if (slot - first < function.GetParameterCount()) {
      const ScriptParameter parameter = function.GetParameter(slot - first);
      if (named.IsVariable() ? !parameter.TakesReferenceTo(TypeOf(named)) : !parameter.isFunction)
        return Fail(kTypeError, node.place);
    }
    hasReferences |= CompileReference(node, slot);
  };
  const std::uint32_t count = ForEachArgument(at, call, value, reference, {});
  const std::uint32_t place = ClosingPlace(m_program, at);
  if (count != function.GetParameterCount()) {
    Fail(kWrongParameterCount, place);
    return EndCall(call, DataType::kNone, wanted);
  }
  Instruction instruction;
  instruction.op = Op::kCall;
  instruction.n =
      static_cast<std::uint16_t>((wanted == Wanted::kResult ? kWantsResult : 0) | (hasReferences ? kHasReferences : 0));
  instruction.a = call;
  instruction.b = callee.function == 0 ? 0 : HopsTo(callee.function) + 1;
  instruction.function = &function;
  Emit(instruction, place);
  return EndCall(call, DataType::kNone, wanted);
}

// A built-in without effects whose arguments have the types that it wants needs neither a frame nor checks. Otherwise
// the arguments that have been evaluated so far are left for the usual call.
bool Compiler::CompilePureCall(const CONXScriptFunc& function, NodeIndex at, PreparedArguments* prepared,
                               CodeOperand* result) {
  const std::uint32_t slot = NewSlot();
  DataType types[PreparedArguments::kMost];
  std::uint32_t slots[PreparedArguments::kMost] = {slot, slot, slot};
  NodeIndex& argument = prepared->behind;
  std::size_t& count = prepared->count;
  argument = at + 1;
  for (; NodeAt(argument).kind != NodeKind::kArgumentsEnd; ++count) {
    const Node& chain = NodeAt(argument + 1);
    if (count == PreparedArguments::kMost || NodeAt(argument).kind != NodeKind::kValueArgument || chain.hasCalls ||
        m_program.hidesFunctions)
      return false;
    CodeOperand& operand = prepared->operands[count];
    operand = CompileInside(argument + 1);
    types[count] = operand.type;
    argument = chain.value;
  }
  const PureFunction pure = function.GetPureFunction({types, count});
  if (!pure || m_top + count > 0xFFFF)
    return false;
  const std::span<CodeOperand> operands(prepared->operands, count);
  for (CodeOperand& operand : operands) {
    operand.slot = InSlot(operand);
    operand.isOwned |= operand.isConstant;
  }
  std::ranges::transform(operands, slots, &CodeOperand::slot);
  Instruction instruction;
  instruction.op = Op::kCallPure;
  instruction.n = static_cast<std::uint16_t>(slots[2]);
  instruction.a = slot;
  instruction.b = slots[0];
  instruction.c = slots[1];
  instruction.pure = pure;
  Emit(instruction, NodeAt(argument).place);
  for (const CodeOperand& operand : operands)
    if (operand.IsText() && operand.isOwned)
      Emit(Op::kRelease, operand.slot);
  *result = EndCall(slot, function.GetResultType(), Wanted::kResult);
  return true;
}

CodeOperand Compiler::CompileBuiltInCall(CONXScriptFunc& function, NodeIndex at, Wanted wanted) {
  PreparedArguments prepared;
  CodeOperand computed;
  const bool isCall = NodeAt(at).kind == NodeKind::kCall;
  if (isCall && wanted == Wanted::kResult && function.IsPure() && CompilePureCall(function, at, &prepared, &computed))
    return computed;
  const std::uint32_t call = BeginCall();
  const auto value = [&](std::uint32_t slot, NodeIndex chain, std::uint32_t) {
    Receive(CompileChain(chain), {.slot = slot, .isTagged = true});
  };
  const auto reference = [&](std::uint32_t slot, const Node& node) { CompileReference(node, slot); };
  const std::uint32_t count = ForEachArgument(at, call, value, reference, prepared);
  Instruction instruction;
  instruction.op = Op::kCallBuiltIn;
  instruction.n = wanted == Wanted::kResult ? kWantsResult : 0;
  instruction.a = call;
  instruction.b = count;
  instruction.callee = &function;
  Emit(instruction, ClosingPlace(m_program, at));
  return EndCall(call, function.GetResultType(), wanted);
}

// Through a parameter: what is called, and so what the arguments are given to, is known when it runs.
CodeOperand Compiler::CompileDynamicCall(const Declaration& callee, NodeIndex at, Wanted wanted) {
  const std::uint32_t call = BeginCall();
  EmitFunction(callee, call);
  bool hasReferences = false;
  const auto value = [&](std::uint32_t slot, NodeIndex chain, std::uint32_t place) {
    Emit(Op::kCheckValue, slot, call, 0, 0, 0, place);
    Receive(CompileChain(chain), {.slot = slot, .isTagged = true, .call = call});
  };
  const auto reference = [&](std::uint32_t slot, const Node& node) {
    hasReferences |= CompileReference(node, slot);
    Emit(Op::kCheckReference, slot, call, 0, 0, 0, node.place);
  };
  const std::uint32_t count = ForEachArgument(at, call, value, reference, {});
  const auto flags =
      static_cast<std::uint16_t>((wanted == Wanted::kResult ? kWantsResult : 0) | (hasReferences ? kHasReferences : 0));
  Emit(Op::kCallDynamic, call, count, 0, flags, 0, ClosingPlace(m_program, at));
  return EndCall(call, DataType::kNone, wanted);
}
