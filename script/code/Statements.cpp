// Statements, and what happens between and behind them.
//
// Where reading would be behind a statement depends on the way that ran through it. It matters in two places: the stop
// test of a loop's next round, and a function's end. So a way ends in its own instruction there: an `if` that stands
// last in a body is compiled with the body's tail in both branches.
#include "platform/Platform.h"
#include "script/code/Compiler.h"

#include <new>

void Compiler::CompileStatements(NodeIndex first, NodeIndex end, const Tail& tail) {
  if (platform::FreeStack() == 0)
    throw std::bad_alloc();
  const auto next = [&](NodeIndex at) { // functions are no statements
    while (at < end && NodeAt(at).kind == NodeKind::kFunction)
      at = NodeAt(at).end;
    return at;
  };
  NodeIndex at = next(first);
  if (at == end)
    return EmitTail(tail);
  while (at < end) {
    const NodeKind kind = NodeAt(at).kind;
    const NodeIndex behind = kind == NodeKind::kIf || kind == NodeKind::kWhile ? NodeAt(at).end : 0;
    const bool tailInside = kind == NodeKind::kIf && next(behind) == end;
    at = next(CompileStatement(at, tailInside ? tail : Tail()));
    if (at == end && !tailInside)
      EmitTail(tail);
  }
}

// Returns what stands behind it.
NodeIndex Compiler::CompileStatement(NodeIndex at, const Tail& tail) {
  const Node& node = NodeAt(at);
  if (m_isWatched)
    Emit(Op::kWatchStatement, node.place);
  SetTop(m_function.slotCount);
  switch (node.kind) {
  case NodeKind::kAssign:
    return CompileAssignment(at);
  case NodeKind::kAssignResult:
    return CompileResultAssignment(at);
  case NodeKind::kIf:
    CompileIf(at, tail);
    return node.end;
  case NodeKind::kWhile:
    CompileWhile(at);
    return node.end;
  default:
    return CompileEvaluation(at);
  }
}

NodeIndex Compiler::CompileAssignment(NodeIndex at) {
  const Node& node = NodeAt(at);
  const NodeIndex chain = at + 1;
  const Declaration& target = Resolve(node.value);
  if (!target.IsVariable()) { // a function hides it, which would have to be called
    m_place = m_program.scanner.StartBehind(node.place);
    Fail(kUnexpectedToken, m_place);
  } else {
    const PendingOperation value = CompileChain(chain);
    m_place = value.place;
    Assign(target, static_cast<Operator>(node.op), value);
  }
  return NodeAt(chain).value;
}

// When nobody wants the function's value, it is computed and dropped.
NodeIndex Compiler::CompileResultAssignment(NodeIndex at) {
  const Node& node = NodeAt(at);
  const PendingOperation pending = CompileChain(at + 1);
  m_place = pending.place;
  const CodeOperand value = ValueOf(pending, m_function.slotCount);
  if (value.IsNumber() && static_cast<Operator>(node.op) == Operator::kAssign) {
    Emit(Op::kAssignResultNumber, 0, InSlot(value), 0, static_cast<std::uint16_t>(value.type), 0, m_place);
  } else {
    const CodeOperand tagged = Tagged(value);
    Emit(Op::kAssignResult, 0, tagged.slot, 0, node.op, tagged.isOwned ? 1 : 0, m_place);
  }
  return NodeAt(at + 1).value;
}

NodeIndex Compiler::CompileEvaluation(NodeIndex at) {
  const NodeIndex chain = at + 1;
  const Node& first = NodeAt(chain + 1);
  if (Resolve(first.value).IsVariable()) { // which hides the function
    m_place = m_program.scanner.StartBehind(first.place);
    Fail(kUnexpectedToken, m_place);
  } else {
    CompileEffects(chain);
    m_place = m_cut != kNoPlace ? m_cut : NodeAt(chain).place;
  }
  return NodeAt(chain).value;
}

void Compiler::CompileIf(NodeIndex at, const Tail& tail) {
  const Node& node = NodeAt(at);
  const CONXScriptIfStatement& statement = m_program.ifStatements[node.value];
  bool isSimple = false;
  const std::uint32_t outer = m_body;
  const std::vector<std::uint32_t> otherwise = CompileCondition(at + 1, &isSimple);
  const std::uint32_t behindCondition = NodeAt(at + 1).place;
  m_place = behindCondition;
  EnterBody(statement);
  CompileBranch(statement, statement.first, statement.end, tail);
  std::vector<std::uint32_t> done;
  const bool hasElse = statement.elseFirst != statement.elseEnd;
  if (tail.Falls() && hasElse)
    done.push_back(Emit(Op::kJump, 0));
  JumpsToHere(otherwise);
  m_place = behindCondition;
  if (hasElse || !tail.Falls())
    CompileBranch(statement, statement.elseFirst, statement.elseEnd, tail);
  JumpsToHere(done);
  LeaveBody(statement);
  m_body = outer;
}

void Compiler::CompileBranch(const CONXScriptBlock& block, NodeIndex first, NodeIndex end, const Tail& tail) {
  if (first == end)
    return EmitTail(tail);
  EmitReset(block);
  CompileStatements(first, end, tail);
  if (tail.Falls())
    EmitRelease(block);
}

void Compiler::CompileWhile(NodeIndex at) {
  const Node& node = NodeAt(at);
  const CONXScriptWhileStatement& statement = m_program.whileStatements[node.value];
  const std::uint32_t outer = m_body;
  Emit(Op::kCheckStop, 0, 0, 0, 0, 0, node.place);
  LoopTail loop;
  loop.head = Here();
  std::vector<std::uint32_t> leaves = CompileCondition(at + 1, &loop.isSimple);
  loop.leaves = &leaves;
  m_place = statement.brace;
  EnterBody(statement);
  EmitReset(statement);
  Tail tail;
  tail.loop = &loop;
  CompileStatements(statement.first, statement.end, tail);
  LeaveBody(statement);
  m_body = outer;
  JumpsToHere(leaves);
  EmitRelease(statement);
  m_place = statement.brace;
}

// The jumps that are taken when it does not hold. Simple: it is the one jump.
std::vector<std::uint32_t> Compiler::CompileCondition(NodeIndex at, bool* isSimple) {
  std::vector<std::uint32_t> jumps;
  const std::uint32_t begin = Here();
  SetTop(m_function.slotCount);
  const PendingOperation pending = CompileChain(at);
  if (m_cut == kNoPlace) {
    EmitJumpUnless(pending, &jumps);
  } else { // the type comes first
    const CodeOperand value = Tagged(ValueOf(pending, m_top));
    const std::uint32_t check = Emit(Op::kJumpUnlessDynamic, 0, value.slot, 0, 0, 0, pending.place);
    JumpsToHere({check});
    FailWhereCut();
  }
  *isSimple = Here() == begin + 1 && jumps.size() == 1;
  return jumps;
}

void Compiler::EmitTail(const Tail& tail) {
  if (tail.loop)
    return EmitRound(*tail.loop);
  if (!tail.returns)
    return;
  if (m_isWatched && !m_isMain)
    Emit(Op::kWatchLeave, m_function.number);
  if (m_isMain) {
    Emit(Op::kEnd, 0);
    return;
  }
  const std::uint32_t first = CONXScriptProgramFunc::kFirstParameter;
  bool holdsMore = m_hasReferences; // than numbers
  for (std::size_t i = 0; !holdsMore && i < m_function.GetParameterCount(); ++i) {
    const ScriptParameter parameter = m_function.GetParameter(i);
    holdsMore = parameter.isFunction || parameter.type == DataType::kString;
  }
  holdsMore = holdsMore || m_function.hasTexts;
  if (holdsMore)
    Emit(Op::kReleaseAndReturn, first, m_function.slotCount - first, 0, 0, 0, m_place);
  else
    Emit(Op::kReturn, 0, 0, 0, 0, 0, m_place);
}

// A simple condition is tested again right here, so that a round takes one jump.
void Compiler::EmitRound(const LoopTail& loop) {
  constexpr auto kNoComparison = static_cast<std::uint16_t>(Op::kAdd); // which stands behind all of them
  const auto op = loop.isSimple ? static_cast<std::uint16_t>(m_code->instructions[loop.head].op) : kNoComparison;
  if (op >= kNoComparison) {
    Emit(Op::kLoop, loop.head, 0, 0, 0, 0, m_place);
    return;
  }
  // From "leave if not" to "go on if".
  const std::uint16_t comparison = (op / kCompareForms) ^ 1U;
  const std::uint16_t constant = op % 2;
  Instruction round = m_code->instructions[loop.head];
  round.op = static_cast<Op>(comparison * kCompareForms + static_cast<std::uint16_t>(CompareForm::kLoop) + constant);
  round.a = loop.head + 1;
  Emit(round, m_place);
  loop.leaves->push_back(Emit(Op::kJump, 0));
}

// Every entry makes all variables of a body anew, wherever in it they are declared.
void Compiler::EmitReset(const CONXScriptBlock& block) {
  DeclarationIndex index = block.firstDeclaration;
  while (index != kNoIndex) {
    const Declaration& first = m_program.declarations[index];
    index = first.next;
    if (first.kind != DeclarationKind::kVariable)
      continue;
    std::uint32_t count = 1;
    while (index != kNoIndex && m_program.declarations[index].kind == DeclarationKind::kVariable &&
           m_program.declarations[index].type == first.type &&
           m_program.declarations[index].slot == first.slot + count) {
      ++count;
      index = m_program.declarations[index].next;
    }
    const bool isText = first.Type() == DataType::kString;
    Emit(isText ? Op::kResetTexts : Op::kResetNumbers, first.slot, count, 0, first.type);
  }
}

// Texts of a block's variables are not kept longer than the block.
void Compiler::EmitRelease(const CONXScriptBlock& block) {
  for (DeclarationIndex index = block.firstDeclaration; index != kNoIndex; index = m_program.declarations[index].next) {
    const Declaration& declared = m_program.declarations[index];
    if (declared.kind == DeclarationKind::kVariable && declared.Type() == DataType::kString)
      Emit(Op::kRelease, declared.slot);
  }
}
