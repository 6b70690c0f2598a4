// Tokens, statements and declarations; Expressions.cpp has the rest.
#include "script/program/ProgramReader.h"

#include "platform/Platform.h"

#include <algorithm>

ProgramReader::ProgramReader(ScriptProgram& program, ProblemSink* problems)
    : m_program(program), m_stopEvent(program.context.StopEvent()), m_problems(problems) {}

// --- tokens

ScriptError ProgramReader::GetToken(Token* token) {
  *token = m_putBackCount > 0 ? m_putBack[--m_putBackCount] : m_program.scanner.Scan(m_position);
  m_program.place = token->start;
  if (token->kind == TokenKind::kMalformed)
    return PassOver(token);
  m_position = std::max(m_position, token->end);
  return kScriptOk;
}

ScriptError ProgramReader::ExpectIdentifier(Token* token, Expectation expected) {
  if (const ScriptError error = GetToken(token))
    return error;
  return token->kind == TokenKind::kIdentifier ? kScriptOk : Unexpected(expected);
}

// A malformed token keeps its own error.
ScriptError ProgramReader::ExpectToken(char punctuation, Expectation expected) {
  Token token;
  if (const ScriptError lexerError = GetToken(&token))
    return lexerError;
  return IsPunctuation(token, punctuation) ? kScriptOk : Unexpected(expected);
}

ScriptError ProgramReader::ExpectBlockEnd(std::uint32_t opened) {
  const ScriptError error = ExpectToken('}', Expectation::kBlockEnd);
  if (error != kScriptOk)
    m_problem.opened = opened;
  return error;
}

ScriptError ProgramReader::Unexpected(Expectation expected, NameId subject) {
  m_problem.expected = expected;
  m_problem.subject = subject;
  switch (expected) {
  case Expectation::kSemicolon:
  case Expectation::kDeclarationEnd:
  case Expectation::kParameter:
  case Expectation::kParametersGoOn:
    return kSyntaxError;
  case Expectation::kDeclaredName:
    return kUnknownIdentifier;
  default:
    return kUnexpectedToken;
  }
}

// --- bodies

ScriptError ProgramReader::ParseProgram() {
  CONXScriptProgramFunc& main = m_program.Main();
  return ParseBody({.function = main, .block = main.body, .isFunction = true}, 0);
}

ScriptError ProgramReader::ParseBody(const Body& body, unsigned depth) {
  return ParseBlock(body, depth, &body.block.first, &body.block.end);
}

// A block ends before its closing brace, which the caller reads. The main program (depth 0) also ends at a brace, once
// it has had a statement: whatever stands behind that brace is not looked at.
ScriptError ProgramReader::ParseBlock(const Body& body, unsigned depth, NodeIndex* first, NodeIndex* end) {
  if (platform::FreeStack() == 0)
    return kOutOfMemory;
  *first = Next();
  Token token;
  if (const ScriptError error = GetToken(&token))
    return error;
  if (depth == 0 ? token.kind == TokenKind::kEnd : IsPunctuation(token, '}')) {
    PutBack(token);
    *end = Next();
    return kScriptOk;
  }
  do {
    if (const ScriptError problem = ParseStatement(body, depth, token))
      if (const ScriptError error = Recover(body, depth, problem))
        return error;
    if (const ScriptError error = GetToken(&token))
      return error;
  } while (token.kind != TokenKind::kEnd && !IsPunctuation(token, '}'));
  // The end of the text stays read where it ends a block with statements: the brace is then missing there, behind white
  // space and comments.
  if (token.kind != TokenKind::kEnd)
    PutBack(token);
  *end = Next();
  return kScriptOk;
}

ScriptError ProgramReader::ParseStatement(const Body& body, unsigned depth, const Token& first) {
  if (m_stopEvent.IsAbandoned())
    return kProcessingAborted;
  if (IsName(first, kNameVar))
    return ParseDeclaration(body);
  if (IsName(first, kNameFunc))
    return ParseFunction(body, depth);
  if (IsName(first, kNameIf))
    return ParseIf(body, depth, first);
  if (IsName(first, kNameWhile))
    return ParseWhile(body, depth, first);
  PutBack(first);
  if (const ScriptError error = ParseSimpleStatement(body))
    return error;
  return ExpectToken(';', Expectation::kSemicolon);
}

// --- declarations

ScriptError ProgramReader::ParseTypeAndName(Declaration* declared) {
  Token token;
  if (const ScriptError error = ExpectIdentifier(&token, Expectation::kType))
    return error;
  declared->type = static_cast<std::uint8_t>(TypeOfName(token.value));
  if (declared->Type() == DataType::kNone) {
    static_cast<void>(Unexpected(Expectation::kType));
    return kUnknownDataType;
  }
  if (const ScriptError error = ExpectIdentifier(&token, Expectation::kVariableName))
    return error;
  declared->name = token.value;
  declared->place = token.start;
  return kScriptOk;
}

DeclarationIndex ProgramReader::Declare(Declaration declared, const Body& body) {
  const auto index = static_cast<DeclarationIndex>(m_program.declarations.size());
  declared.body = body.block.number;
  declared.function = body.function.number;
  if (declared.kind != DeclarationKind::kFunction)
    declared.slot = body.function.slotCount++;
  m_program.declarations.push_back(declared);
  m_program.scopes.Declare(index, body.block);
  return index;
}

ScriptError ProgramReader::ParseDeclaration(const Body& body) {
  Declaration declared{DeclarationKind::kVariable};
  if (const ScriptError error = ParseTypeAndName(&declared))
    return error;
  const DeclarationIndex index = Declare(declared, body);
  body.function.hasTexts |= declared.Type() == DataType::kString;
  const ScriptError problem = ExpectToken(';', Expectation::kDeclarationEnd);
  return problem == kScriptOk ? kScriptOk : ParseMoreDeclarations(body, index, problem);
}

ScriptError ProgramReader::ParseFunction(const Body& body, unsigned depth) {
  Token name;
  if (const ScriptError error = ExpectIdentifier(&name, Expectation::kFunctionName))
    return error;
  CONXScriptProgramFunc& function = m_program.functions.emplace_back(m_program);
  function.name = name.value;
  function.number = static_cast<std::uint32_t>(m_program.functions.size() - 1);
  function.outer = body.function.number;
  function.level = body.function.level + 1;
  function.body.number = ++m_program.bodyCount;
  Declaration declared{DeclarationKind::kFunction};
  declared.name = name.value;
  declared.place = name.start;
  declared.slot = m_program.AddCallable(function);
  const DeclarationIndex hides = m_program.scopes.Find(name.value);
  m_program.hidesFunctions |=
      TypeOfName(name.value) != DataType::kNone || (hides != kNoIndex && m_program.declarations[hides].body == 0);
  Declare(declared, body); // in front of its body, so that it can call itself
  const NodeIndex node = Add({.kind = NodeKind::kFunction, .place = name.start, .value = function.number});
  const Body inner{.function = function, .block = function.body, .isFunction = true};
  ScriptError problem = ExpectToken('(', Expectation::kParametersBegin);
  if (problem == kScriptOk)
    problem = ParseParameters(function);
  if (problem == kScriptOk)
    problem = ExpectToken('{', Expectation::kBlock);
  if (problem != kScriptOk)
    if (const ScriptError error = FindBlock(inner, problem))
      return error;
  const std::uint32_t opened = m_program.place;
  if (body.isFunction)
    m_program.scopes.HideParameters(body.function.number);
  if (const ScriptError error = ParseBody(inner, depth + 1))
    return error;
  m_program.scopes.Leave(function.body);
  if (body.isFunction)
    m_program.scopes.ShowParameters(body.function.number);
  m_program.nodes[node].end = Next();
  return ExpectBlockEnd(opened);
}

ScriptError ProgramReader::ParseParameters(CONXScriptProgramFunc& function) {
  Token token;
  if (const ScriptError error = GetToken(&token))
    return error;
  if (IsPunctuation(token, ')'))
    return kScriptOk;
  for (;;) {
    if (const ScriptError error = ParseParameter(function, token))
      return error;
    if (const ScriptError error = GetToken(&token))
      return error;
    if (IsPunctuation(token, ')'))
      return kScriptOk;
    if (!IsPunctuation(token, ','))
      return Unexpected(Expectation::kParametersGoOn);
    if (const ScriptError error = GetToken(&token))
      return error;
  }
}

ScriptError ProgramReader::ParseParameter(CONXScriptProgramFunc& function, const Token& first) {
  Declaration declared{DeclarationKind::kParameter};
  if (IsName(first, kNameVar)) {
    if (const ScriptError error = ParseTypeAndName(&declared))
      return error;
  } else if (IsName(first, kNameFunc)) {
    Token name;
    if (const ScriptError error = ExpectIdentifier(&name, Expectation::kFunctionName))
      return error;
    declared.kind = DeclarationKind::kFunctionParameter;
    declared.name = name.value;
    declared.place = name.start;
  } else {
    return Unexpected(Expectation::kParameter);
  }
  Declare(declared, {function, function.body, true});
  function.AddParameter({declared.kind == DeclarationKind::kFunctionParameter, declared.Type()});
  return kScriptOk;
}

// --- statements

ScriptError ProgramReader::ParseIf(const Body& body, unsigned depth, const Token& word) {
  const auto number = static_cast<std::uint32_t>(m_program.ifStatements.size());
  CONXScriptIfStatement& statement = m_program.ifStatements.emplace_back();
  statement.number = ++m_program.bodyCount;
  const NodeIndex node = Add({.kind = NodeKind::kIf, .place = word.start, .value = number});
  const Body inner{body.function, statement, false};
  if (const ScriptError error = ParseCondition(inner))
    return error;
  const std::uint32_t opened = m_program.place;
  if (const ScriptError error = ParseBody(inner, depth + 1))
    return error;
  if (const ScriptError error = ExpectBlockEnd(opened))
    return error;
  statement.elseFirst = statement.elseEnd = Next();
  if (const ScriptError error = ParseElse(inner, depth, statement))
    return error;
  m_program.scopes.Leave(statement);
  m_program.nodes[node].end = Next();
  return kScriptOk;
}

ScriptError ProgramReader::ParseElse(const Body& body, unsigned depth, CONXScriptIfStatement& statement) {
  Token token;
  if (const ScriptError error = GetToken(&token))
    return error;
  if (!IsName(token, kNameElse)) {
    PutBack(token);
    return kScriptOk;
  }
  if (const ScriptError problem = ExpectToken('{', Expectation::kElseBlock))
    return ParseElseWithoutBlock(body, depth, problem);
  const std::uint32_t opened = m_program.place;
  if (const ScriptError error = ParseBlock(body, depth + 1, &statement.elseFirst, &statement.elseEnd))
    return error;
  return ExpectBlockEnd(opened);
}

ScriptError ProgramReader::ParseWhile(const Body& body, unsigned depth, const Token& word) {
  const auto number = static_cast<std::uint32_t>(m_program.whileStatements.size());
  CONXScriptWhileStatement& statement = m_program.whileStatements.emplace_back();
  statement.number = ++m_program.bodyCount;
  const NodeIndex node = Add({.kind = NodeKind::kWhile, .place = word.start, .value = number});
  const Body inner{.function = body.function, .block = statement, .isFunction = false};
  if (const ScriptError error = ParseCondition(inner))
    return error;
  statement.brace = m_program.place;
  if (const ScriptError error = ParseBody(inner, depth + 1))
    return error;
  m_program.scopes.Leave(statement);
  m_program.nodes[node].end = Next();
  return ExpectBlockEnd(statement.brace);
}

// With the brace that begins the body.
ScriptError ProgramReader::ParseCondition(const Body& body) {
  ScriptError problem = ExpectToken('(', Expectation::kConditionBegin);
  if (problem == kScriptOk)
    problem = ParseExpression();
  if (problem == kScriptOk)
    problem = ExpectToken(')', Expectation::kConditionEnd);
  if (problem == kScriptOk)
    problem = ExpectToken('{', Expectation::kBlock);
  return problem == kScriptOk ? kScriptOk : FindBlock(body, problem);
}

// The token behind the name is read ahead only when the name is the function's own, so that an unknown name is reported
// at itself.
ScriptError ProgramReader::ParseSimpleStatement(const Body& body) {
  Token name;
  if (const ScriptError error = ExpectIdentifier(&name, Expectation::kStatement))
    return error;
  Token next;
  if (name.value == body.function.name) {
    if (const ScriptError error = GetToken(&next))
      return error;
    if (IsOperatorOf(next, kAssignmentOperator))
      return ParseAssignment(NodeKind::kAssignResult, name, next.op, kNoIndex);
    PutBack(next);
  }
  const DeclarationIndex found = m_program.scopes.Find(name.value);
  if (found == kNoIndex)
    return ParseUnknownStatement(body, name);
  if (!m_program.declarations[found].IsVariable()) {
    PutBack(name);
    Add({.kind = NodeKind::kEvaluate, .place = name.start});
    return ParseExpression();
  }
  if (const ScriptError error = GetToken(&next))
    return error;
  if (!IsOperatorOf(next, kAssignmentOperator))
    return Unexpected(Expectation::kAssignment, name.value);
  return ParseAssignment(NodeKind::kAssign, name, next.op, found);
}

ScriptError ProgramReader::ParseAssignment(NodeKind kind, const Token& name, Operator op, DeclarationIndex target) {
  Add({.kind = kind, .op = static_cast<std::uint8_t>(op), .place = name.start, .value = target});
  return ParseExpression();
}

NodeIndex ProgramReader::Add(const Node& node) {
  m_program.nodes.push_back(node);
  return Next() - 1;
}
