// What names lead to in the body that is being compiled, and how their variables are reached.
#include "script/code/Compiler.h"

// The body's own names, with its parameters in front of its locals.
void Compiler::EnterBody(const CONXScriptBlock& block) {
  for (DeclarationIndex index = block.firstDeclaration; index != kNoIndex; index = m_program.declarations[index].next) {
    const Declaration& declared = m_program.declarations[index];
    DeclarationIndex& latest = m_program.latestOfName[declared.name];
    m_hiddenNames.push_back(latest);
    const bool isHidden = latest != kNoIndex && m_program.declarations[latest].body == declared.body &&
                          m_program.declarations[latest].IsParameter() && !declared.IsParameter();
    if (!isHidden)
      latest = index;
  }
  m_body = block.number;
}

void Compiler::LeaveBody(const CONXScriptBlock& block) {
  std::vector<DeclarationIndex> declared;
  for (DeclarationIndex index = block.firstDeclaration; index != kNoIndex; index = m_program.declarations[index].next)
    declared.push_back(index);
  for (std::size_t i = declared.size(); i-- > 0;) {
    m_program.latestOfName[m_program.declarations[declared[i]].name] = m_hiddenNames.back();
    m_hiddenNames.pop_back();
  }
}

// What was found when the text was read, unless the body itself declares the name.
const Declaration& Compiler::Resolve(DeclarationIndex index) const {
  const Declaration& found = m_program.declarations[index];
  const DeclarationIndex latest = m_program.latestOfName[found.name];
  if (latest != kNoIndex && m_program.declarations[latest].body == m_body)
    return m_program.declarations[latest];
  return found;
}

const Declaration* Compiler::ResolveTypeName(NameId name) const {
  const DeclarationIndex latest = m_program.latestOfName[name];
  const bool isDeclared = latest != kNoIndex && m_program.declarations[latest].body == m_body;
  return isDeclared ? &m_program.declarations[latest] : nullptr;
}

// A slot of the running frame that holds the value itself.
bool Compiler::IsLocal(const Declaration& variable) const {
  return variable.kind != DeclarationKind::kPredefinedVariable && variable.function == m_function.number &&
         !(m_hasReferences && variable.kind == DeclarationKind::kParameter);
}

std::uint32_t Compiler::HopsTo(std::uint32_t function) const {
  return m_function.level - m_program.functions[function].level;
}

DataType Compiler::TypeOf(const Declaration& variable) const {
  return variable.Type();
}

// The variable's slot, or a copy of what cannot be reached directly.
CodeOperand Compiler::LoadVariable(const Declaration& variable) {
  CodeOperand operand;
  operand.type = TypeOf(variable);
  operand.slot = variable.slot;
  if (IsLocal(variable))
    return operand;
  operand.isOwned = true;
  operand.slot = NewSlot();
  if (variable.kind == DeclarationKind::kPredefinedVariable) {
    Instruction load;
    load.op = Op::kLoadPredefined;
    load.a = operand.slot;
    load.variable = m_program.predefinedVariables[variable.slot];
    Emit(load);
  } else if (variable.function == m_function.number) {
    Emit(Op::kLoadParameter, operand.slot, variable.slot);
  } else if (variable.function == 0) {
    Emit(Op::kLoadGlobal, operand.slot, variable.slot);
  } else {
    Emit(Op::kLoadOuter, operand.slot, variable.slot, 0, static_cast<std::uint16_t>(HopsTo(variable.function)));
  }
  return operand;
}

void Compiler::EmitStore(const Declaration& variable, std::uint32_t from) {
  if (variable.kind == DeclarationKind::kPredefinedVariable) {
    Instruction store;
    store.op = Op::kStorePredefined;
    store.a = from;
    store.variable = m_program.predefinedVariables[variable.slot];
    Emit(store);
  } else if (variable.function == m_function.number) {
    Emit(Op::kStoreParameter, from, variable.slot);
  } else if (variable.function == 0) {
    Emit(Op::kStoreGlobal, from, variable.slot);
  } else {
    Emit(Op::kStoreOuter, from, variable.slot, 0, static_cast<std::uint16_t>(HopsTo(variable.function)));
  }
}

void Compiler::EmitReference(const Declaration& variable, std::uint32_t slot) {
  const auto type = static_cast<std::uint16_t>(variable.Type());
  if (variable.kind == DeclarationKind::kPredefinedVariable) {
    Instruction refer;
    refer.op = Op::kReferPredefined;
    refer.a = slot;
    refer.variable = m_program.predefinedVariables[variable.slot];
    Emit(refer);
  } else if (variable.function == m_function.number) {
    Emit(Op::kRefer, slot, variable.slot, 0, type);
  } else if (variable.function == 0) {
    Emit(Op::kReferGlobal, slot, variable.slot);
  } else {
    Emit(Op::kReferOuter, slot, variable.slot, HopsTo(variable.function), type);
  }
}

// A function as a value: which one, and the frame whose variables it sees around it.
void Compiler::EmitFunction(const Declaration& function, std::uint32_t slot) {
  if (function.kind == DeclarationKind::kFunctionParameter) {
    Emit(Op::kLoadFunction, slot, function.slot, HopsTo(function.function));
    return;
  }
  const bool ofMain = function.function == 0;
  Emit(Op::kFunction, slot, 0, ofMain ? kNoIndex : HopsTo(function.function), 0, function.slot);
}
