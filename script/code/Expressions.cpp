// Chains of operands and operators.
//
// Operands are evaluated from left to right, then the operators from right to left. A variable needs no copy, unless
// something behind it in the chain may change it.
#include "platform/Platform.h"
#include "script/code/Compiler.h"

#include <algorithm>
#include <new>

PendingOperation Compiler::CompileChain(NodeIndex chain) {
  if (platform::FreeStack() == 0)
    throw std::bad_alloc();
  struct Element {
    Operator op;
    bool isUnary;
    CodeOperand left;
    std::uint32_t top; // in front of the operand
  };
  std::vector<Element> elements;
  const NodeIndex end = NodeAt(chain).value;
  const bool keepsCopies = NodeAt(chain).hasCalls || m_program.hidesFunctions;
  PendingOperation pending;
  pending.place = NodeAt(chain).place;
  m_cut = kNoPlace;
  CodeOperand value;
  for (NodeIndex at = chain + 1;;) {
    const std::uint32_t top = m_top;
    if (NodeAt(at).kind == NodeKind::kUnary) {
      elements.push_back({.op = static_cast<Operator>(NodeAt(at).op), .isUnary = true, .left = {}, .top = top});
      ++at;
      continue;
    }
    value = CompileOperand(&at);
    if (at >= end || m_cut != kNoPlace)
      break;
    if (keepsCopies && !value.isConstant && !value.isOwned) {
      const std::uint32_t copy = NewSlot();
      if (value.IsNumber())
        Emit(Op::kMove, copy, value.slot);
      else
        Emit(Op::kCopy, copy, value.slot);
      value.slot = copy;
      value.isOwned = true;
    }
    elements.push_back({.op = static_cast<Operator>(NodeAt(at).op), .isUnary = false, .left = value, .top = top});
    ++at;
  }
  if (m_cut != kNoPlace)
    pending.place = m_cut;
  const std::uint32_t cut = m_cut;
  pending.left = value;
  while (!elements.empty()) {
    const Element& element = elements.back();
    pending.op = element.op;
    pending.kind = element.isUnary ? PendingOperation::Kind::kUnary : PendingOperation::Kind::kBinary;
    if (!element.isUnary) {
      pending.right = pending.left;
      pending.left = element.left;
    }
    if (elements.size() > 1) {
      pending.left = ValueOf(pending, element.top);
      pending.kind = PendingOperation::Kind::kValue;
    }
    elements.pop_back();
  }
  m_cut = cut;
  return pending;
}

CodeOperand Compiler::CompileOperand(NodeIndex* at) {
  const Node& node = NodeAt(*at);
  CodeOperand operand;
  switch (node.kind) {
  case NodeKind::kNumber:
    operand.isConstant = true;
    operand.type = static_cast<DataType>(node.op);
    operand.bits = operand.type == DataType::kInt32
                       ? static_cast<std::uint64_t>(static_cast<std::int64_t>(static_cast<std::int32_t>(node.value)))
                       : node.value;
    ++*at;
    return operand;
  case NodeKind::kConstant: {
    const CONXScriptVariable& constant = m_program.constants[node.value];
    operand.isConstant = true;
    operand.type = constant.type;
    if (operand.IsText())
      operand.text = constant.text;
    else
      operand.bits = constant.bits;
    ++*at;
    return operand;
  }
  case NodeKind::kMalformed:
    Fail(static_cast<ScriptError>(node.value), node.place);
    operand.isConstant = true;
    operand.type = DataType::kInt32;
    ++*at;
    return operand;
  case NodeKind::kParenthesis: {
    const NodeIndex chain = *at + 1;
    *at = NodeAt(chain).value;
    return CompileInside(chain);
  }
  case NodeKind::kName: {
    ++*at;
    const Declaration& found = Resolve(node.value);
    if (found.IsVariable())
      return LoadVariable(found);
    Fail(kUnexpectedToken, m_program.scanner.StartBehind(node.place)); // a function hides it
    operand.isConstant = true;
    operand.type = DataType::kInt32;
    return operand;
  }
  case NodeKind::kConvert: {
    const NodeIndex conversion = *at;
    *at = node.end;
    return CompileConversion(conversion);
  }
  default: {
    const NodeIndex call = *at;
    *at = node.end;
    const Declaration& callee = Resolve(node.value);
    if (!callee.IsVariable())
      return CompileCall(callee, call, Wanted::kResult);
    const CodeOperand variable = LoadVariable(callee); // which hides the function
    m_cut = m_program.scanner.StartBehind(node.place);
    return variable;
  }
  }
}

// The value of a chain that something closes.
CodeOperand Compiler::CompileInside(NodeIndex chain) {
  const std::uint32_t top = m_top;
  const PendingOperation pending = CompileChain(chain);
  const CodeOperand value = ValueOf(pending, top);
  FailWhereCut();
  return value;
}

CodeOperand Compiler::CompileConversion(NodeIndex at) {
  const Node& node = NodeAt(at);
  if (const Declaration* hides = ResolveTypeName(node.value)) {
    if (!hides->IsVariable())
      return CompileCall(*hides, at, Wanted::kResult);
    const CodeOperand variable = LoadVariable(*hides);
    m_cut = m_program.scanner.StartBehind(node.place);
    return variable;
  }
  const std::uint32_t slot = m_top;
  const std::uint32_t place = NodeAt(at + 1).place;
  PendingOperation inner;
  inner.left = CompileInside(at + 1);
  inner.place = place;
  const auto type = static_cast<DataType>(node.op);
  if (inner.left.type == type)
    return inner.left;
  CodeOperand converted;
  converted.type = type;
  if (inner.left.isConstant && inner.left.IsNumber() && IsNumeric(type)) {
    CONXScriptVariable number(type);
    static_cast<void>(number.SetNumber(inner.left.bits, type));
    converted.isConstant = true;
    converted.bits = number.bits;
    return converted;
  }
  SetTop(std::max(m_top, slot + 1));
  Receive(inner, {slot, type});
  SetTop(slot + 1);
  converted.slot = slot;
  converted.isOwned = true;
  return converted;
}

// Behind a name that hides a function stands a parenthesis which nothing expects.
void Compiler::FailWhereCut() {
  if (m_cut != kNoPlace)
    Fail(kUnexpectedToken, m_cut);
  m_cut = kNoPlace;
}

// Calls take place, no operator is applied, all the way down; malformed literals fail.
void Compiler::CompileEffects(NodeIndex chain) {
  if (platform::FreeStack() == 0)
    throw std::bad_alloc();
  const NodeIndex end = NodeAt(chain).value;
  m_cut = kNoPlace;
  NodeIndex at = chain + 1;
  while (at < end && m_cut == kNoPlace) {
    if (NodeAt(at).kind == NodeKind::kUnary || NodeAt(at).kind == NodeKind::kBinary)
      ++at;
    else
      CompileOperandEffects(&at);
  }
}

void Compiler::CompileOperandEffects(NodeIndex* at) {
  const NodeIndex first = *at;
  const Node& node = NodeAt(first);
  const std::uint32_t top = m_top;
  switch (node.kind) {
  case NodeKind::kParenthesis:
    *at = NodeAt(first + 1).value;
    CompileEffects(first + 1);
    FailWhereCut();
    break;
  case NodeKind::kConvert: {
    *at = node.end;
    const Declaration* hides = ResolveTypeName(node.value);
    if (hides && hides->IsVariable()) {
      m_cut = m_program.scanner.StartBehind(node.place);
    } else if (hides) {
      CompileCall(*hides, first, Wanted::kEffects);
    } else {
      CompileEffects(first + 1);
      FailWhereCut();
    }
    break;
  }
  case NodeKind::kCall: {
    *at = node.end;
    const Declaration& callee = Resolve(node.value);
    if (callee.IsVariable())
      m_cut = m_program.scanner.StartBehind(node.place);
    else
      CompileCall(callee, first, Wanted::kEffects);
    break;
  }
  case NodeKind::kName:
    if (Resolve(node.value).IsVariable()) {
      ++*at; // nothing happens
      break;
    }
    [[fallthrough]];
  default:
    CompileOperand(at); // literals, which may be malformed
  }
  SetTop(top);
}
