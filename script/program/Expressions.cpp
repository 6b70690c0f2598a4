// Reading expressions. Operators all have one rank and group to the right, so that an expression is a chain, which is
// read without recursion; parentheses, conversions and arguments nest.
#include "platform/Platform.h"
#include "script/program/ProgramReader.h"

ScriptError ProgramReader::ParseExpression() {
  if (platform::FreeStack() == 0)
    return kOutOfMemory;
  const NodeIndex chain = Add({NodeKind::kChain});
  if (const ScriptError error = ParseChain(chain))
    return error;
  Node& node = m_program.nodes[chain];
  node.place = m_program.place;
  node.value = Next();
  return kScriptOk;
}

ScriptError ProgramReader::ParseChain(NodeIndex chain) {
  for (;;) {
    Token token;
    if (const ScriptError error = GetToken(&token))
      return error;
    if (token.kind == TokenKind::kOperator) { // a leading operator applies to everything behind it
      if (!IsOperatorOf(token, kUnaryOperator))
        return Unexpected(Expectation::kOperand);
      Add({.kind = NodeKind::kUnary, .op = static_cast<std::uint8_t>(token.op), .place = token.start});
      continue;
    }
    if (const ScriptError error = ParseOperand(token, chain))
      return error;
    if (const ScriptError error = GetToken(&token))
      return error;
    if (!IsOperatorOf(token, kBinaryOperator)) {
      PutBack(token);
      return kScriptOk;
    }
    Add({.kind = NodeKind::kBinary, .op = static_cast<std::uint8_t>(token.op), .place = token.start});
  }
}

ScriptError ProgramReader::ParseOperand(const Token& first, NodeIndex chain) {
  switch (first.kind) {
  case TokenKind::kString:
    AddText(first);
    return kScriptOk;
  case TokenKind::kDecimal:
  case TokenKind::kHexadecimal:
  case TokenKind::kBinary:
    AddNumber(first);
    return kScriptOk;
  case TokenKind::kIdentifier:
    return ParseName(first, chain);
  case TokenKind::kPunctuation: {
    if (!IsPunctuation(first, '('))
      return Unexpected(Expectation::kOperand);
    Add({.kind = NodeKind::kParenthesis, .place = first.start});
    const NodeIndex inner = Next();
    if (const ScriptError error = ParseExpression())
      return error;
    m_program.nodes[chain].hasCalls |= m_program.nodes[inner].hasCalls;
    return ExpectToken(')', Expectation::kParenthesisEnd);
  }
  case TokenKind::kOperator:
  case TokenKind::kEnd:
  case TokenKind::kMalformed:
    break;
  }
  return Unexpected(Expectation::kOperand);
}

// A name found wins over a type name.
ScriptError ProgramReader::ParseName(const Token& name, NodeIndex chain) {
  const DeclarationIndex found = m_program.scopes.Find(name.value);
  if (found != kNoIndex && m_program.declarations[found].IsVariable()) {
    Add({.kind = NodeKind::kName, .place = name.start, .value = found});
    return kScriptOk;
  }
  if (found != kNoIndex) {
    const NodeIndex call = Add({.kind = NodeKind::kCall, .place = name.start, .value = found});
    const Declaration& declared = m_program.declarations[found];
    // A built-in changes no variable but through a reference.
    m_program.nodes[chain].hasCalls |= declared.kind == DeclarationKind::kFunctionParameter || declared.body != 0;
    if (const ScriptError error = ParseArguments(name.value, chain))
      return error;
    m_program.nodes[call].end = Next();
    return kScriptOk;
  }
  const DataType type = TypeOfName(name.value);
  if (type == DataType::kNone)
    return ParseUnknownName(name, chain);
  const NodeIndex conversion = Add(
      {.kind = NodeKind::kConvert, .op = static_cast<std::uint8_t>(type), .place = name.start, .value = name.value});
  if (const ScriptError error = ExpectToken('(', Expectation::kConversionBegin))
    return error;
  const NodeIndex inner = Next();
  if (const ScriptError error = ParseExpression())
    return error;
  m_program.nodes[chain].hasCalls |= m_program.nodes[inner].hasCalls;
  m_program.nodes[conversion].end = Next();
  return ExpectToken(')', Expectation::kConversionEnd);
}

ScriptError ProgramReader::ParseArguments(NameId callee, NodeIndex chain) {
  Token token;
  if (const ScriptError error = GetToken(&token))
    return error;
  if (!IsPunctuation(token, '('))
    return Unexpected(Expectation::kArgumentsBegin, callee);
  if (const ScriptError error = GetToken(&token))
    return error;
  if (!IsPunctuation(token, ')')) {
    PutBack(token);
    do {
      if (const ScriptError error = ParseArgument(chain))
        return error;
      if (const ScriptError error = GetToken(&token))
        return error;
    } while (IsPunctuation(token, ','));
    if (!IsPunctuation(token, ')'))
      return Unexpected(Expectation::kArgumentsGoOn);
  }
  Add({.kind = NodeKind::kArgumentsEnd, .place = token.start});
  return kScriptOk;
}

ScriptError ProgramReader::ParseArgument(NodeIndex chain) {
  Token token;
  if (const ScriptError error = GetToken(&token))
    return error;
  if (token.kind != TokenKind::kOperator || token.op != Operator::kAnd) {
    PutBack(token);
    Add({.kind = NodeKind::kValueArgument, .place = token.start});
    const NodeIndex inner = Next();
    if (const ScriptError error = ParseExpression())
      return error;
    m_program.nodes[chain].hasCalls |= m_program.nodes[inner].hasCalls;
    return kScriptOk;
  }
  if (const ScriptError error = ExpectIdentifier(&token, Expectation::kReferredName))
    return error;
  DeclarationIndex found = m_program.scopes.Find(token.value);
  if (found == kNoIndex)
    if (const ScriptError error = TakeUnknown(token, &found))
      return error;
  Add({.kind = NodeKind::kReference, .place = token.start, .value = found});
  m_program.nodes[chain].hasCalls = true;
  return kScriptOk;
}

void ProgramReader::AddNumber(const Token& token) {
  const Literal& number = token.number;
  if (number.error != kScriptOk) {
    Add({.kind = NodeKind::kMalformed, .place = token.start, .value = number.error});
    return;
  }
  if (!Is64Bit(number.type)) {
    Add({.kind = NodeKind::kNumber,
         .op = static_cast<std::uint8_t>(number.type),
         .place = token.start,
         .value = static_cast<std::uint32_t>(number.bits)});
    return;
  }
  CONXScriptVariable& constant = m_program.constants.emplace_back(number.type);
  constant.bits = number.bits;
  Add({.kind = NodeKind::kConstant,
       .op = static_cast<std::uint8_t>(number.type),
       .place = token.start,
       .value = static_cast<std::uint32_t>(m_program.constants.size() - 1)});
}

void ProgramReader::AddText(const Token& token) {
  CONXScriptVariable& constant = m_program.constants.emplace_back(DataType::kString);
  constant.text = m_program.scanner.TextOf(token).Detach();
  Add({.kind = NodeKind::kConstant,
       .op = static_cast<std::uint8_t>(DataType::kString),
       .place = token.start,
       .value = static_cast<std::uint32_t>(m_program.constants.size() - 1)});
}
