// Reading a script: the operations of CONXScriptFunc that check the syntax and build the tree of functions,
// declarations and statement blocks. Expressions are checked here and read again when they run.

#include "platform/Platform.h"
#include "script/CONXScriptFunc.h"
#include "script/ScriptProgram.h"

ScriptError CONXScriptVarTemplate::Parse(SourceCursor& cursor) {
  Token token;
  if (const ScriptError error = cursor.ExpectTokenKind(&token, TokenKind::kIdentifier))
    return error;
  m_type = TypeOfName(token.value);
  if (m_type == DataType::kNone)
    return kUnknownDataType;
  if (const ScriptError error = cursor.ExpectTokenKind(&token, TokenKind::kIdentifier))
    return error;
  SetName(cursor.Source().TextOf(token), token.value);
  return kScriptOk;
}

ScriptError CONXScriptFunc::ParseBody(SourceCursor& cursor, unsigned depth) {
  return ParseBlock(cursor, depth, &m_statements);
}

// A block ends before its closing brace, which the caller reads. The main program (depth 0) also ends at a brace, once
// it has had a statement: whatever stands behind that brace is not looked at.
ScriptError CONXScriptFunc::ParseBlock(SourceCursor& cursor, unsigned depth, Statements* statements) {
  if (platform::FreeStack() == 0)
    return kOutOfMemory;
  TokenIndex place = cursor.Place();
  Token token;
  if (const ScriptError error = cursor.GetToken(&token))
    return error;
  bool ended = depth == 0 ? token.kind == TokenKind::kEnd : IsPunctuation(token, '}');
  while (!ended) {
    if (const ScriptError error = ParseStatement(cursor, depth, token, place, statements))
      return error;
    place = cursor.Place();
    if (const ScriptError error = cursor.GetToken(&token))
      return error;
    ended = token.kind == TokenKind::kEnd || IsPunctuation(token, '}');
  }
  // The end of the text stays read where it ends a block with statements: the brace is then missing there, behind white
  // space and comments.
  if (token.kind != TokenKind::kEnd)
    cursor.SetPlace(place);
  return kScriptOk;
}

ScriptError CONXScriptFunc::ParseStatement(SourceCursor& cursor, unsigned depth, const Token& first, TokenIndex place,
                                           Statements* statements) {
  if (m_program->Context().StopEvent().IsAbandoned())
    return kProcessingAborted;
  if (IsName(first, kNameVar))
    return ParseDeclaration(cursor);
  if (IsName(first, kNameFunc))
    return ParseFunction(cursor, depth);
  if (IsName(first, kNameIf))
    return ParseIf(cursor, depth, place, statements);
  if (IsName(first, kNameWhile))
    return ParseWhile(cursor, depth, place, statements);
  cursor.SetPlace(place);
  statements->push_back({place, nullptr});
  if (const ScriptError error = ParseSimpleStatement(cursor))
    return error;
  return cursor.ExpectToken(';', kSyntaxError);
}

ScriptError CONXScriptFunc::ParseDeclaration(SourceCursor& cursor) {
  auto declared = std::make_unique<CONXScriptVarTemplate>();
  if (const ScriptError error = declared->Parse(cursor))
    return error;
  AddDeclaration(std::move(declared));
  return cursor.ExpectToken(';', kSyntaxError);
}

ScriptError CONXScriptFunc::ParseFunction(SourceCursor& cursor, unsigned depth) {
  Token name;
  if (const ScriptError error = cursor.ExpectTokenKind(&name, TokenKind::kIdentifier))
    return error;
  auto added = std::make_unique<CONXScriptFunc>(m_program);
  CONXScriptFunc& function = *added;
  function.SetName(cursor.Source().TextOf(name), name.value);
  AddDeclaration(std::move(added)); // in front of its body, so that it can call itself
  function.m_outer = {this, m_locals.size(), false};
  if (const ScriptError error = cursor.ExpectToken('('))
    return error;
  if (const ScriptError error = function.ParseParameters(cursor))
    return error;
  if (const ScriptError error = cursor.ExpectToken('{'))
    return error;
  if (const ScriptError error = function.ParseBody(cursor, depth + 1))
    return error;
  return cursor.ExpectToken('}');
}

ScriptError CONXScriptFunc::ParseParameters(SourceCursor& cursor) {
  Token token;
  if (const ScriptError error = cursor.GetToken(&token))
    return error;
  if (IsPunctuation(token, ')'))
    return kScriptOk;
  for (;;) {
    if (const ScriptError error = ParseParameter(cursor, token))
      return error;
    if (const ScriptError error = cursor.GetToken(&token))
      return error;
    if (IsPunctuation(token, ')'))
      return kScriptOk;
    if (!IsPunctuation(token, ','))
      return kSyntaxError;
    if (const ScriptError error = cursor.GetToken(&token))
      return error;
  }
}

ScriptError CONXScriptFunc::ParseParameter(SourceCursor& cursor, const Token& first) {
  if (IsName(first, kNameVar)) {
    auto value = std::make_unique<CONXScriptVarTemplate>();
    if (const ScriptError error = value->Parse(cursor))
      return error;
    AddParameter(std::move(value));
    return kScriptOk;
  }
  if (!IsName(first, kNameFunc))
    return kSyntaxError;
  Token name;
  if (const ScriptError error = cursor.ExpectTokenKind(&name, TokenKind::kIdentifier))
    return error;
  auto function = std::make_unique<CONXScriptFunc>(m_program);
  function->SetName(cursor.Source().TextOf(name), name.value);
  AddParameter(std::move(function));
  return kScriptOk;
}

ScriptError CONXScriptFunc::ParseIf(SourceCursor& cursor, unsigned depth, TokenIndex place, Statements* statements) {
  auto added = std::make_unique<CONXScriptIfStatement>(m_program, m_function);
  CONXScriptIfStatement& statement = *added;
  AddBlock(std::move(added));
  statements->push_back({place, &statement});
  if (const ScriptError error = ParseConditionAndBody(cursor, depth, statement))
    return error;
  const TokenIndex behind = cursor.Place();
  Token token;
  if (const ScriptError error = cursor.GetToken(&token))
    return error;
  if (!IsName(token, kNameElse)) {
    cursor.SetPlace(behind);
    return kScriptOk;
  }
  if (const ScriptError error = cursor.ExpectToken('{'))
    return error;
  if (const ScriptError error = statement.ParseElseBlock(cursor, depth + 1))
    return error;
  return cursor.ExpectToken('}');
}

ScriptError CONXScriptFunc::ParseWhile(SourceCursor& cursor, unsigned depth, TokenIndex place, Statements* statements) {
  CONXScriptFunc& statement = AddBlock(std::make_unique<CONXScriptWhileStatement>(m_program, m_function));
  statements->push_back({place, &statement});
  return ParseConditionAndBody(cursor, depth, statement);
}

ScriptError CONXScriptFunc::ParseConditionAndBody(SourceCursor& cursor, unsigned depth, CONXScriptFunc& block) {
  if (const ScriptError error = cursor.ExpectToken('('))
    return error;
  if (const ScriptError error = ParseExpression(cursor))
    return error;
  if (const ScriptError error = cursor.ExpectToken(')'))
    return error;
  if (const ScriptError error = cursor.ExpectToken('{'))
    return error;
  if (const ScriptError error = block.ParseBody(cursor, depth + 1))
    return error;
  return cursor.ExpectToken('}');
}

ScriptError CONXScriptFunc::ParseSimpleStatement(SourceCursor& cursor) {
  const TokenIndex place = cursor.Place();
  Token name;
  if (const ScriptError error = cursor.ExpectTokenKind(&name, TokenKind::kIdentifier))
    return error;
  Token next;
  if (name.value == m_function->GetNameId()) {
    const TokenIndex behindName = cursor.Place();
    if (const ScriptError error = cursor.GetToken(&next))
      return error;
    if (IsOperatorOf(next, kAssignmentOperator))
      return ParseExpression(cursor);
    cursor.SetPlace(behindName);
  }
  const FoundName found = FindName(name.value);
  if (found.kind == FoundName::Kind::kNothing)
    return kUnknownIdentifier;
  if (!found.IsVariable()) {
    cursor.SetPlace(place);
    return ParseExpression(cursor);
  }
  if (const ScriptError error = cursor.GetToken(&next))
    return error;
  return IsOperatorOf(next, kAssignmentOperator) ? ParseExpression(cursor) : kUnexpectedToken;
}

ScriptError CONXScriptFunc::ParseExpression(SourceCursor& cursor) const {
  if (platform::FreeStack() == 0)
    return kOutOfMemory;
  Token token;
  if (const ScriptError error = cursor.GetToken(&token))
    return error;
  if (token.kind == TokenKind::kOperator)
    return IsOperatorOf(token, kUnaryOperator) ? ParseExpression(cursor) : kUnexpectedToken;
  if (const ScriptError error = ParseOperand(cursor, token))
    return error;
  const TokenIndex behind = cursor.Place();
  if (const ScriptError error = cursor.GetToken(&token))
    return error;
  if (IsOperatorOf(token, kBinaryOperator))
    return ParseExpression(cursor);
  cursor.SetPlace(behind);
  return kScriptOk;
}

ScriptError CONXScriptFunc::ParseOperand(SourceCursor& cursor, const Token& first) const {
  switch (first.kind) {
  case TokenKind::kString:
  case TokenKind::kDecimal:
  case TokenKind::kHexadecimal:
  case TokenKind::kBinary:
    return kScriptOk;
  case TokenKind::kPunctuation:
    if (!IsPunctuation(first, '('))
      return kUnexpectedToken;
    if (const ScriptError error = ParseExpression(cursor))
      return error;
    return cursor.ExpectToken(')');
  case TokenKind::kIdentifier:
    break;
  case TokenKind::kOperator:
  case TokenKind::kEnd:
  case TokenKind::kMalformed:
    return kUnexpectedToken;
  }
  const FoundName found = FindName(first.value);
  if (found.IsVariable())
    return kScriptOk;
  if (found.kind != FoundName::Kind::kNothing)
    return ParseArguments(cursor);
  if (TypeOfName(first.value) == DataType::kNone)
    return kUnknownIdentifier;
  if (const ScriptError error = cursor.ExpectToken('('))
    return error;
  if (const ScriptError error = ParseExpression(cursor))
    return error;
  return cursor.ExpectToken(')');
}

ScriptError CONXScriptFunc::ParseArguments(SourceCursor& cursor) const {
  if (const ScriptError error = cursor.ExpectToken('('))
    return error;
  const TokenIndex first = cursor.Place();
  Token token;
  if (const ScriptError error = cursor.GetToken(&token))
    return error;
  if (IsPunctuation(token, ')'))
    return kScriptOk;
  cursor.SetPlace(first);
  do {
    if (const ScriptError error = ParseArgument(cursor))
      return error;
    if (const ScriptError error = cursor.GetToken(&token))
      return error;
  } while (IsPunctuation(token, ','));
  return IsPunctuation(token, ')') ? kScriptOk : kUnexpectedToken;
}

ScriptError CONXScriptFunc::ParseArgument(SourceCursor& cursor) const {
  const TokenIndex first = cursor.Place();
  Token token;
  if (const ScriptError error = cursor.GetToken(&token))
    return error;
  if (token.kind != TokenKind::kOperator || token.op != Operator::kAnd) {
    cursor.SetPlace(first);
    return ParseExpression(cursor);
  }
  if (const ScriptError error = cursor.ExpectTokenKind(&token, TokenKind::kIdentifier))
    return error;
  return FindName(token.value).kind == FoundName::Kind::kNothing ? kUnknownIdentifier : kScriptOk;
}
