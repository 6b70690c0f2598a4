#include "script/code/Listing.h"

#include "script/code/Compiler.h"

namespace {

bool HoldsPointer(Op op) {
  switch (op) {
  case Op::kText:
  case Op::kAssignConstant:
  case Op::kAppendConstant:
  case Op::kTextEqualConstant:
  case Op::kJumpIfText:
  case Op::kLoadPredefined:
  case Op::kStorePredefined:
  case Op::kReferPredefined:
  case Op::kCall:
  case Op::kCallBuiltIn:
  case Op::kCallPure:
    return true;
  default:
    return false;
  }
}

bool HoldsText(Op op) {
  return op == Op::kText || op == Op::kAssignConstant || op == Op::kAppendConstant || op == Op::kTextEqualConstant ||
         op == Op::kJumpIfText;
}

std::string Line(const ScriptProgram& program, const Instruction& instruction, std::size_t number,
                 std::uint32_t place) {
  std::string line =
      std::to_string(number) + " @" + (place == kNoPlace ? "-" : std::to_string(place)) + " " + NameOf(instruction.op);
  const auto add = [&](const char* name, std::uint64_t value) {
    if (value != 0)
      line += std::string(" ") + name + "=" + std::to_string(static_cast<std::int64_t>(value));
  };
  add("a", instruction.a);
  add("b", instruction.b);
  add("c", instruction.c);
  add("n", instruction.n);
  if (!HoldsPointer(instruction.op))
    add("k", instruction.k);
  else if (HoldsText(instruction.op))
    line.append(" \"").append(ViewOf(instruction.text)).append("\"");
  else if (instruction.op == Op::kCall)
    line.append(" ").append(program.names.SpellingOf(instruction.function->name));
  return line + "\n";
}

} // namespace

std::string ListCode(ScriptProgram& program) {
  std::string listing;
  for (CONXScriptProgramFunc& function : program.functions) {
    listing.append(program.names.SpellingOf(function.name)).append("\n");
    const std::unique_ptr<Code> code = Compiler(program, function, {}).Compile();
    for (std::size_t i = 0; i < code->instructions.size(); ++i)
      listing += "  " + Line(program, code->instructions[i], i, code->places[i]);
  }
  return listing;
}
