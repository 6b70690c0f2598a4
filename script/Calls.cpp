// Calling functions: script functions and built-ins alike.

#include "script/CONXScriptFunc.h"
#include "script/ScriptProgram.h"

// Every call of a function enters and leaves here.
ScriptError CONXScriptFunc::Invoke(FunctionValue callee, ScriptArguments& arguments, CONXScriptVariable* result) const {
  if (!callee.function->CheckArgumentCount(arguments.size()))
    return kWrongParameterCount;
  return callee.function->Execute(m_program->Context(), callee.surroundings, arguments, result);
}

ScriptError CONXScriptFunc::CallFunction(Activation& activation, FunctionValue callee, CONXScriptVariable* result) {
  ScriptArguments arguments;
  if (const ScriptError error = EvaluateArguments(activation, *callee.function, &arguments))
    return error;
  SourceCursor& cursor = m_program->Cursor();
  const TokenIndex behind = cursor.Place();
  if (const ScriptError error = Invoke(callee, arguments, result))
    return error;
  cursor.SetPlace(behind);
  return kScriptOk;
}

// Arguments beyond the declared parameters are evaluated too, before anybody counts.
ScriptError CONXScriptFunc::EvaluateArguments(Activation& activation, const CONXScriptFunc& callee,
                                              ScriptArguments* arguments) {
  SourceCursor& cursor = m_program->Cursor();
  if (const ScriptError error = cursor.ExpectToken('('))
    return error;
  const TokenIndex first = cursor.Place();
  Token token;
  if (const ScriptError error = cursor.GetToken(&token))
    return error;
  if (IsPunctuation(token, ')'))
    return kScriptOk;
  cursor.SetPlace(first);
  arguments->reserve(callee.GetParameterCount());
  do {
    if (const ScriptError error = EvaluateArgument(activation, callee.GetParameter(arguments->size()), arguments))
      return error;
    if (const ScriptError error = cursor.GetToken(&token))
      return error;
  } while (IsPunctuation(token, ','));
  return IsPunctuation(token, ')') ? kScriptOk : kUnexpectedToken;
}

ScriptError CONXScriptFunc::EvaluateArgument(Activation& activation, const CONXScriptObject* parameter,
                                             ScriptArguments* arguments) {
  SourceCursor& cursor = m_program->Cursor();
  const TokenIndex first = cursor.Place();
  Token token;
  if (const ScriptError error = cursor.GetToken(&token))
    return error;
  if (token.kind == TokenKind::kOperator && token.op == Operator::kAnd)
    return EvaluateReference(activation, parameter, arguments);
  cursor.SetPlace(first);
  CONXScriptVariable value;
  if (parameter) {
    if (parameter->GetObjectKind() != ObjectKind::kTemplate)
      return kTypeError;
    value.SetType(static_cast<const CONXScriptVarTemplate*>(parameter)->GetType());
  }
  if (const ScriptError error = EvaluateExpression(activation, &value))
    return error;
  arguments->emplace_back(std::move(value));
  return kScriptOk;
}

ScriptError CONXScriptFunc::EvaluateReference(Activation& activation, const CONXScriptObject* parameter,
                                              ScriptArguments* arguments) {
  SourceCursor& cursor = m_program->Cursor();
  Token name;
  if (const ScriptError error = cursor.ExpectTokenKind(&name, TokenKind::kIdentifier))
    return error;
  const FoundName found = Resolve(name, cursor.Place() - 1);
  if (found.kind == FoundName::Kind::kNothing)
    return kUnknownIdentifier;
  if (!found.IsVariable()) {
    if (parameter && parameter->GetObjectKind() != ObjectKind::kFunction)
      return kTypeError;
    arguments->emplace_back(FunctionOf(found, activation));
    return kScriptOk;
  }
  CONXScriptVariable* variable = VariableOf(found, activation);
  if (parameter && !TakesReference(*parameter, variable->GetType()))
    return kTypeError;
  arguments->emplace_back(CONXScriptVariable(variable));
  return kScriptOk;
}

bool CONXScriptFunc::TakesReference(const CONXScriptObject& parameter, DataType type) {
  return parameter.GetObjectKind() == ObjectKind::kTemplate &&
         static_cast<const CONXScriptVarTemplate&>(parameter).GetType() == type;
}

ScriptError CONXScriptFunc::ExecuteFunction(std::string_view name, ScriptArguments& arguments,
                                            CONXScriptVariable* result) {
  const FoundName found = FindName(m_program->Cursor().Source().Names().Intern(name));
  if (found.kind == FoundName::Kind::kNothing)
    return kUnknownIdentifier;
  if (found.IsVariable())
    return kUnknownObjectType;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (const CONXScriptObject* parameter = found.function->GetParameter(i))
      if (const ScriptError error = BindArgument(*parameter, &arguments[i]))
        return error;
  }
  Activation activation{nullptr, nullptr, nullptr, nullptr, nullptr};
  activation.function = &activation;
  MakeVariables(activation);
  return Invoke({found.function, &activation}, arguments, result);
}

// An argument that was evaluated without knowing the parameter takes its type now.
ScriptError CONXScriptFunc::BindArgument(const CONXScriptObject& parameter, ScriptArgument* argument) {
  const bool wantsVariable = parameter.GetObjectKind() == ObjectKind::kTemplate;
  if (wantsVariable != argument->IsVariable())
    return kTypeError;
  if (!wantsVariable)
    return kScriptOk;
  CONXScriptVariable& variable = argument->variable;
  if (variable.IsReference() && TakesReference(parameter, variable.GetType()))
    return kScriptOk;
  CONXScriptVariable converted(static_cast<const CONXScriptVarTemplate&>(parameter).GetType());
  if (const ScriptError error = converted.Assign(variable))
    return error;
  variable = std::move(converted);
  return kScriptOk;
}
