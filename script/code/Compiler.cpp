#include "script/code/Compiler.h"

#include <algorithm>

Compiler::Compiler(ScriptProgram& program, CONXScriptProgramFunc& function, const Options& options)
    : m_program(program), m_function(function), m_isMain(&function == &program.Main()),
      m_hasReferences(options.hasReferences), m_isWatched(options.isWatched), m_code(std::make_unique<Code>()),
      m_top(function.slotCount) {
  m_code->frameSize = m_top;
  m_program.latestOfName.resize(m_program.names.Count(), kNoIndex);
}

std::unique_ptr<Code> Compiler::Compile() {
  const CONXScriptBlock& body = m_function.body;
  if (m_isWatched && !m_isMain)
    Emit(Op::kWatchEnter, m_function.number);
  EnterBody(body);
  EmitReset(body);
  Tail tail;
  tail.returns = true;
  CompileStatements(body.first, body.end, tail);
  LeaveBody(body);
  return std::move(m_code);
}

std::uint32_t Compiler::NewSlot() {
  const std::uint32_t slot = m_top;
  SetTop(slot + 1);
  return slot;
}

void Compiler::SetTop(std::uint32_t top) {
  m_top = top;
  m_code->frameSize = std::max(m_code->frameSize, top);
}

// Numbers that are known go into a slot of their own.
std::uint32_t Compiler::InSlot(const CodeOperand& operand) {
  if (!operand.isConstant)
    return operand.slot;
  const std::uint32_t slot = NewSlot();
  if (operand.IsText())
    EmitText(Op::kText, slot, 0, operand.text);
  else
    Emit(Op::kNumber, slot, 0, 0, 0, operand.bits);
  return slot;
}

// The operand in a slot that tells its type.
CodeOperand Compiler::Tagged(const CodeOperand& operand) {
  CodeOperand tagged = operand;
  if (operand.isConstant) {
    tagged.isConstant = false;
    tagged.isOwned = true;
    tagged.slot = NewSlot();
    if (operand.IsText())
      EmitText(Op::kText, tagged.slot, 0, operand.text);
    else
      Emit(Op::kTaggedNumber, tagged.slot, 0, 0, static_cast<std::uint16_t>(operand.type), operand.bits);
  } else if (operand.IsNumber()) {
    Emit(Op::kTag, operand.slot, 0, 0, static_cast<std::uint16_t>(operand.type));
  }
  return tagged;
}

std::uint32_t Compiler::Emit(Instruction instruction, std::uint32_t place) {
  m_code->instructions.push_back(instruction);
  m_code->places.push_back(place);
  return Here() - 1;
}

std::uint32_t Compiler::Emit(Op op, std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint16_t n, std::uint64_t k,
                             std::uint32_t place) {
  Instruction instruction;
  instruction.op = op;
  instruction.n = n;
  instruction.a = a;
  instruction.b = b;
  instruction.c = c;
  instruction.k = k;
  return Emit(instruction, place);
}

void Compiler::EmitText(Op op, std::uint32_t a, std::uint32_t b, TextBody* text, std::uint16_t n, std::uint32_t place) {
  Instruction instruction;
  instruction.op = op;
  instruction.n = n;
  instruction.a = a;
  instruction.b = b;
  instruction.text = text;
  Emit(instruction, place);
}

void Compiler::Fail(ScriptError error, std::uint32_t place) {
  Emit(Op::kFail, 0, 0, 0, 0, error, place);
}

void Compiler::JumpsToHere(const std::vector<std::uint32_t>& jumps) {
  for (const std::uint32_t jump : jumps)
    m_code->instructions[jump].a = Here();
}
