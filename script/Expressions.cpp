// Evaluating expressions: from right to left, all binary operators of one rank, straight from the source.
//
// A null result asks for the effects alone: calls take place, no operator is applied.

#include "platform/Platform.h"
#include "script/CONXScriptFunc.h"
#include "script/ScriptProgram.h"

ScriptError CONXScriptFunc::EvaluateExpression(Activation& activation, CONXScriptVariable* result) {
  if (platform::FreeStack() == 0)
    return kOutOfMemory;
  SourceCursor& cursor = m_program->Cursor();
  Token token;
  if (const ScriptError error = cursor.GetToken(&token))
    return error;
  CONXScriptVariable left;
  if (token.kind == TokenKind::kOperator) { // a leading operator applies to everything behind it
    if (!IsOperatorOf(token, kUnaryOperator))
      return kUnexpectedToken;
    if (const ScriptError error = EvaluateExpression(activation, result ? &left : nullptr))
      return error;
    return result ? result->ApplyUnaryOperator(token.op, left) : kScriptOk;
  }
  if (const ScriptError error = EvaluateOperand(activation, token, result ? &left : nullptr))
    return error;
  const TokenIndex behind = cursor.Place();
  if (const ScriptError error = cursor.GetToken(&token))
    return error;
  if (!IsOperatorOf(token, kBinaryOperator)) {
    cursor.SetPlace(behind);
    return result ? result->Assign(left) : kScriptOk;
  }
  CONXScriptVariable right;
  if (const ScriptError error = EvaluateExpression(activation, result ? &right : nullptr))
    return error;
  return result ? result->ApplyBinaryOperator(token.op, left, right) : kScriptOk;
}

ScriptError CONXScriptFunc::EvaluateOperand(Activation& activation, const Token& first, CONXScriptVariable* result) {
  SourceCursor& cursor = m_program->Cursor();
  switch (first.kind) {
  case TokenKind::kString:
  case TokenKind::kDecimal:
  case TokenKind::kHexadecimal:
  case TokenKind::kBinary: {
    const Literal& literal = cursor.Source().LiteralOf(first);
    return result ? result->SetFromLiteral(literal) : literal.error;
  }
  case TokenKind::kIdentifier:
    return EvaluateName(activation, first, result);
  case TokenKind::kPunctuation:
    if (!IsPunctuation(first, '('))
      return kUnexpectedToken;
    if (const ScriptError error = EvaluateExpression(activation, result))
      return error;
    return cursor.ExpectToken(')');
  case TokenKind::kOperator:
  case TokenKind::kEnd:
  case TokenKind::kMalformed:
    break;
  }
  return kUnexpectedToken;
}

ScriptError CONXScriptFunc::EvaluateName(Activation& activation, const Token& name, CONXScriptVariable* result) {
  const FoundName found = Resolve(name, m_program->Cursor().Place() - 1);
  if (found.IsVariable())
    return result ? result->Assign(*VariableOf(found, activation)) : kScriptOk;
  if (found.kind != FoundName::Kind::kNothing)
    return CallFunction(activation, FunctionOf(found, activation), result);
  const DataType type = TypeOfName(name.value);
  return type == DataType::kNone ? kUnknownIdentifier : EvaluateConversion(activation, type, result);
}

ScriptError CONXScriptFunc::EvaluateConversion(Activation& activation, DataType type, CONXScriptVariable* result) {
  SourceCursor& cursor = m_program->Cursor();
  if (const ScriptError error = cursor.ExpectToken('('))
    return error;
  CONXScriptVariable value;
  if (const ScriptError error = EvaluateExpression(activation, result ? &value : nullptr))
    return error;
  if (const ScriptError error = cursor.ExpectToken(')'))
    return error;
  if (!result)
    return kScriptOk;
  CONXScriptVariable converted(type);
  if (const ScriptError error = converted.Assign(value))
    return error;
  return result->Assign(converted);
}
