// Running bodies and statements.

#include "platform/Platform.h"
#include "script/CONXScriptFunc.h"
#include "script/ScriptProgram.h"

ScriptError CONXScriptFunc::Execute(CONXRunContext& /*context*/, Activation* symbols, ScriptArguments& arguments,
                                    CONXScriptVariable* result) {
  Activation activation{symbols, nullptr, &arguments, result, nullptr};
  activation.function = &activation;
  return ExecuteBody(activation, m_statements);
}

// Every entry makes all variables of the body anew, wherever in it they are declared.
ScriptError CONXScriptFunc::ExecuteBody(Activation& activation, const Statements& statements) {
  if (platform::FreeStack() == 0)
    return kOutOfMemory;
  if (m_program->Context().StopEvent().IsAbandoned())
    return kProcessingAborted;
  MakeVariables(activation);
  for (const Statement& statement : statements)
    if (const ScriptError error = ExecuteStatement(activation, statement))
      return error;
  return kScriptOk;
}

void CONXScriptFunc::MakeVariables(Activation& activation) const {
  if (m_variableCount == 0)
    return;
  activation.variables = std::make_unique<CONXScriptVariable[]>(m_variableCount);
  for (const Local& local : m_locals) {
    if (local.slot != kNone)
      activation.variables[local.slot].Reset(static_cast<const CONXScriptVarTemplate&>(*local.object).GetType());
  }
}

// Every statement of every body begins here.
ScriptError CONXScriptFunc::ExecuteStatement(Activation& activation, const Statement& statement) {
  SourceCursor& cursor = m_program->Cursor();
  cursor.SetPlace(statement.place);
  Token first;
  if (const ScriptError error = cursor.GetToken(&first))
    return error;
  if (!statement.block)
    return ExecuteSimpleStatement(activation, first);
  if (statement.block->GetObjectKind() == ObjectKind::kIfStatement)
    return ExecuteIf(activation, static_cast<CONXScriptIfStatement&>(*statement.block));
  return ExecuteWhile(activation, *statement.block);
}

ScriptError CONXScriptFunc::ExecuteIf(Activation& activation, CONXScriptIfStatement& block) {
  bool holds = false;
  if (const ScriptError error = EvaluateCondition(activation, &holds))
    return error;
  Activation inner{&activation, activation.function, nullptr, nullptr, nullptr};
  return holds ? block.ExecuteBody(inner, block.m_statements) : block.ExecuteElse(inner);
}

ScriptError CONXScriptFunc::ExecuteWhile(Activation& activation, CONXScriptFunc& block) {
  SourceCursor& cursor = m_program->Cursor();
  const TokenIndex condition = cursor.Place();
  for (;;) {
    if (m_program->Context().StopEvent().IsSet())
      return kProcessingAborted;
    cursor.SetPlace(condition);
    bool holds = false;
    if (const ScriptError error = EvaluateCondition(activation, &holds))
      return error;
    if (const ScriptError error = cursor.ExpectToken('{'))
      return error;
    if (!holds)
      return kScriptOk;
    Activation inner{&activation, activation.function, nullptr, nullptr, nullptr};
    if (const ScriptError error = block.ExecuteBody(inner, block.m_statements))
      return error;
  }
}

ScriptError CONXScriptFunc::EvaluateCondition(Activation& activation, bool* holds) {
  SourceCursor& cursor = m_program->Cursor();
  if (const ScriptError error = cursor.ExpectToken('('))
    return error;
  CONXScriptVariable condition;
  if (const ScriptError error = EvaluateExpression(activation, &condition))
    return error;
  if (!IsNumeric(condition.GetType()))
    return kTypeError;
  *holds = condition.GetNumber() != 0;
  return cursor.ExpectToken(')');
}

ScriptError CONXScriptFunc::ExecuteSimpleStatement(Activation& activation, const Token& first) {
  SourceCursor& cursor = m_program->Cursor();
  const TokenIndex behindName = cursor.Place();
  Token next;
  if (first.value == m_function->GetNameId()) {
    if (const ScriptError error = cursor.GetToken(&next))
      return error;
    if (IsOperatorOf(next, kAssignmentOperator))
      return AssignResult(activation, next.op);
    cursor.SetPlace(behindName);
  }
  const FoundName found = Resolve(first, behindName - 1);
  if (found.kind == FoundName::Kind::kNothing)
    return kUnknownIdentifier;
  if (!found.IsVariable()) {
    cursor.SetPlace(behindName - 1);
    return EvaluateExpression(activation, nullptr);
  }
  if (const ScriptError error = cursor.GetToken(&next))
    return error;
  if (!IsOperatorOf(next, kAssignmentOperator))
    return kUnexpectedToken;
  CONXScriptVariable value;
  if (const ScriptError error = EvaluateExpression(activation, &value))
    return error;
  return VariableOf(found, activation)->ApplyAssignment(next.op, value);
}

// When nobody wants the function's value, it is computed and dropped.
ScriptError CONXScriptFunc::AssignResult(Activation& activation, Operator op) {
  CONXScriptVariable value;
  if (const ScriptError error = EvaluateExpression(activation, &value))
    return error;
  CONXScriptVariable* result = activation.function->result;
  return result ? result->ApplyAssignment(op, value) : kScriptOk;
}
