// Going on behind what cannot be read, so that the problems further down are found too, and only those: what follows
// from a problem that was told is not told again.
//
// Names that nothing declares count as declared. A statement that breaks off is passed over: to its semicolon, to the
// block that it seems to have, whose statements are read, or to what can only begin another statement.
#include "script/program/ProgramReader.h"

#include <algorithm>

namespace {

bool IsLineEnd(char c) {
  return c == '\n' || c == '\r' || c == '\0';
}

template <typename Value>
Value& At(std::vector<Value>& byName, NameId name, Value otherwise) {
  if (name >= byName.size())
    byName.resize(name + std::size_t{1}, otherwise);
  return byName[name];
}

} // namespace

// Tells the problem at the current place, unless it follows from one that was told. False: reading ends with it.
bool ProgramReader::Report(ScriptError error) {
  if (!m_problems || error == kOutOfMemory || error == kProcessingAborted)
    return false;
  Token found = m_program.scanner.Scan(m_program.place);
  if (found.kind == TokenKind::kMalformed)
    found.end = EndOfMalformed(found);
  m_problem.error = error;
  m_problem.found = found;
  const bool isTold = m_hasReported && found.begin == m_reported.begin;
  const bool isName = error == kUnknownIdentifier;
  const bool isNear = m_reported.kind == TokenKind::kMalformed || !IsFirstOnLine(found);
  const bool follows = m_hasReported && !isName && found.start == m_reported.end && isNear;
  const bool isForgiven = isName && found.value < m_forgiven.size() && m_forgiven[found.value] != 0;
  if (isTold || follows || isForgiven)
    return true;
  m_hasReported = true;
  m_reported = found;
  return m_problems->Take(m_problem);
}

// --- tokens

// The token of the latest problem comes next.
void ProgramReader::Rewind() {
  m_putBackCount = 0;
  m_position = m_problem.found.begin;
}

// The next token, whatever it is. None may be put back.
Token ProgramReader::Skip() {
  const Token token = m_program.scanner.Scan(m_position);
  m_position = token.kind == TokenKind::kMalformed ? EndOfMalformed(token) : token.end;
  return token;
}

// To the quote that closes it, or to where the line, or whatever looks like a number, ends.
std::uint32_t ProgramReader::EndOfMalformed(const Token& token) const {
  const std::string_view text = m_program.scanner.Text();
  std::size_t end = token.begin + std::size_t{1};
  if (text[token.begin] != '"') {
    end = text.find_first_not_of(":abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_0123456789", end);
    return static_cast<std::uint32_t>(std::min(end, text.size()));
  }
  while (end < text.size() && !IsLineEnd(text[end]) && text[end] != '"')
    end += text[end] == '\\' && end + 1 < text.size() && !IsLineEnd(text[end + 1]) ? 2 : 1;
  return static_cast<std::uint32_t>(std::min(end + (end < text.size() && text[end] == '"' ? 1 : 0), text.size()));
}

// It counts as a number from now on.
ScriptError ProgramReader::PassOver(Token* malformed) {
  const auto error = static_cast<ScriptError>(malformed->value);
  static_cast<void>(Unexpected(Expectation::kWellFormedToken));
  if (!Report(error))
    return error;
  malformed->kind = TokenKind::kDecimal;
  malformed->number = DecimalLiteral("0");
  malformed->end = EndOfMalformed(*malformed);
  m_position = std::max(m_position, malformed->end);
  return kScriptOk;
}

// Passes over a comment or text in single quotes, which other languages have.
bool ProgramReader::SkipForeignText() {
  const std::string_view text = m_program.scanner.Text();
  std::size_t at = m_program.scanner.Scan(m_position).begin;
  const bool isSecond = at > 0 && text[at - 1] == '/'; // the reader had taken the first character for a division
  const std::string_view sign = text.substr(isSecond ? at - 1 : at, 2);
  std::size_t end = 0;
  if (sign == "//") {
    end = text.find_first_of("\r\n", at);
  } else if (sign == "/*") {
    end = text.find("*/", at);
    end = end == std::string_view::npos ? end : end + 2;
  } else if (sign.starts_with('\'')) {
    end = text.find_first_of("'\r\n", at + 1);
    if (end == std::string_view::npos || text[end] != '\'')
      return false;
    ++end;
  } else {
    return false;
  }
  m_position = static_cast<std::uint32_t>(std::min(end, text.size()));
  return true;
}

bool ProgramReader::IsFirstOnLine(const Token& token) const {
  const std::string_view before = m_program.scanner.Text().substr(0, token.begin);
  const std::size_t last = before.find_last_not_of(" \t");
  return last == std::string_view::npos || IsLineEnd(before[last]);
}

bool ProgramReader::BeginsStatement(const Token& token) const {
  const bool isWord =
      IsName(token, kNameVar) || IsName(token, kNameFunc) || IsName(token, kNameIf) || IsName(token, kNameWhile);
  return isWord && IsFirstOnLine(token);
}

// An assignment or a call, for all that can be seen.
bool ProgramReader::LooksLikeStatement(const Token& token) const {
  const Token next = m_program.scanner.Scan(token.end);
  return token.kind == TokenKind::kIdentifier && IsFirstOnLine(token) &&
         (IsOperatorOf(next, kAssignmentOperator) || IsPunctuation(next, '('));
}

// --- statements

// Leaves kScriptOk where the next statement, or the end of the block, can be read.
ScriptError ProgramReader::Recover(const Body& body, unsigned depth, ScriptError error) {
  if (!Report(error))
    return error;
  const bool isAtStatement = m_problem.expected == Expectation::kStatement;
  const std::uint32_t begin = m_problem.found.begin;
  Rewind();
  if (IsSemicolonLeftOut())
    return kScriptOk;
  unsigned open = 0; // parentheses
  for (;;) {
    if (SkipForeignText()) {
      if (isAtStatement)
        return kScriptOk;
      continue;
    }
    const Token token = Skip();
    const bool isNext = open == 0 && token.begin > begin && LooksLikeStatement(token);
    if (token.kind == TokenKind::kEnd || BeginsStatement(token) || isNext) {
      m_position = token.begin;
      return kScriptOk;
    }
    if (token.kind == TokenKind::kIdentifier)
      At(m_forgiven, token.value, '\0') = 1;
    if (IsPunctuation(token, '('))
      ++open;
    else if (IsPunctuation(token, ')') && open > 0)
      --open;
    const Token next = m_program.scanner.Scan(m_position);
    if (IsPunctuation(token, ';') && (open == 0 || IsFirstOnLine(next)) && !IsName(next, kNameElse))
      return kScriptOk;
    if (IsPunctuation(token, '}')) {
      if (depth > 0)
        m_position = token.begin;
      return kScriptOk;
    }
    if (IsPunctuation(token, '{')) {
      if (const ScriptError blockError = ParseStrayBlock(body, depth))
        return blockError;
      const Token behind = m_program.scanner.Scan(m_position);
      if (SkipLoopEnd() || !(IsName(behind, kNameElse) || IsPunctuation(behind, ';')))
        return kScriptOk;
      open = 0;
    }
  }
}

// The statement is complete but for its semicolon.
bool ProgramReader::IsSemicolonLeftOut() const {
  if (m_problem.expected != Expectation::kSemicolon && m_problem.expected != Expectation::kDeclarationEnd)
    return false;
  const Token& found = m_problem.found;
  return found.kind == TokenKind::kEnd || IsPunctuation(found, '}') ||
         (found.kind == TokenKind::kIdentifier && IsFirstOnLine(found));
}

// `while (…);` behind the block of a loop of other languages.
bool ProgramReader::SkipLoopEnd() {
  const std::uint32_t begin = m_position;
  if (IsName(Skip(), kNameWhile) && LooksLikeCall()) {
    while (!IsPunctuation(Skip(), ';') && m_position < m_program.scanner.Text().size()) {
    }
    return true;
  }
  m_position = begin;
  return false;
}

// The brace has been read. Its names are those of a block of their own.
ScriptError ProgramReader::ParseStrayBlock(const Body& body, unsigned depth) {
  const std::uint32_t opened = m_position - 1;
  CONXScriptIfStatement& block = m_program.ifStatements.emplace_back();
  block.number = ++m_program.bodyCount;
  if (const ScriptError error = ParseBody({body.function, block, false}, depth + 1))
    return error;
  m_program.scopes.Leave(block);
  const ScriptError error = ExpectBlockEnd(opened);
  m_putBackCount = 0;
  return error == kScriptOk || Report(error) ? kScriptOk : error;
}

// Behind a heading that cannot be read: reads on until the brace that begins the body has been read.
ScriptError ProgramReader::FindBlock(const Body& body, ScriptError error) {
  if (!Report(error))
    return error;
  Rewind();
  for (unsigned open = 0;;) {
    if (SkipForeignText())
      continue;
    const Token token = Skip();
    if (IsPunctuation(token, '{')) {
      m_program.place = token.start;
      return kScriptOk;
    }
    const bool isEnd = token.kind == TokenKind::kEnd || BeginsStatement(token) || IsPunctuation(token, '}') ||
                       (IsPunctuation(token, ';') && (open == 0 || IsFirstOnLine(m_program.scanner.Scan(m_position))));
    if (isEnd)
      break;
    if (token.kind == TokenKind::kIdentifier)
      At(m_forgiven, token.value, '\0') = 1;
    if (IsPunctuation(token, '('))
      ++open;
    else if (IsPunctuation(token, ')') && open > 0)
      --open;
  }
  m_program.scopes.Leave(body.block);
  return error;
}

// `else if`, which stands for another statement, and anything else behind `else`.
ScriptError ProgramReader::ParseElseWithoutBlock(const Body& body, unsigned depth, ScriptError error) {
  if (!Report(error))
    return error;
  Rewind();
  Token token;
  if (const ScriptError tokenError = GetToken(&token))
    return tokenError;
  return IsName(token, kNameIf) ? ParseIf(body, depth, token) : error;
}

// What other languages write behind a declared name: a value, or further names.
ScriptError ProgramReader::ParseMoreDeclarations(const Body& body, DeclarationIndex first, ScriptError error) {
  if (!Report(error))
    return error;
  Rewind();
  DeclarationIndex index = first;
  Declaration declared{m_program.declarations[first].kind, m_program.declarations[first].type};
  for (;;) {
    Token token;
    if (const ScriptError tokenError = GetToken(&token))
      return tokenError;
    if (IsPunctuation(token, ';'))
      return kScriptOk;
    if (token.kind == TokenKind::kOperator && token.op == Operator::kAssign) {
      if (const ScriptError valueError = ParseAssignment(NodeKind::kAssign, token, token.op, index))
        return valueError;
    } else if (IsPunctuation(token, ',')) {
      if (const ScriptError nameError = ExpectIdentifier(&token, Expectation::kVariableName))
        return nameError;
      declared.name = token.value;
      declared.place = token.start;
      index = Declare(declared, body);
    } else {
      return Unexpected(Expectation::kSemicolon);
    }
  }
}

// --- names that nothing declares

DeclarationIndex ProgramReader::DeclareUnknown(const Token& name) {
  DeclarationIndex& index = At(m_unknown, name.value, kNoIndex);
  if (index == kNoIndex) {
    index = static_cast<DeclarationIndex>(m_program.declarations.size());
    m_program.declarations.push_back({.kind = DeclarationKind::kUnknown, .name = name.value, .place = name.start});
  }
  return index;
}

// The name has been read last.
ScriptError ProgramReader::TakeUnknown(const Token& name, DeclarationIndex* declared) {
  const ScriptError error = Unexpected(Expectation::kDeclaredName);
  if (!Report(error))
    return error;
  *declared = DeclareUnknown(name);
  return kScriptOk;
}

// The name may be a variable's or a function's, or a word of another language that begins a statement.
ScriptError ProgramReader::ParseUnknownStatement(const Body& body, const Token& name) {
  const ScriptError error = Unexpected(Expectation::kDeclaredName);
  if (!m_problems)
    return error;
  m_problem.function = body.function.level > 0 ? body.function.name : ReadProblem::kNoName;
  const Token next = m_program.scanner.Scan(m_position);
  const bool isAssigned = IsOperatorOf(next, kAssignmentOperator);
  if (!isAssigned && !LooksLikeCall())
    return error;
  DeclarationIndex declared = kNoIndex;
  if (!Report(error))
    return error;
  declared = DeclareUnknown(name);
  if (!isAssigned) {
    PutBack(name);
    Add({.kind = NodeKind::kEvaluate, .place = name.start});
    return ParseExpression();
  }
  Token op;
  if (const ScriptError tokenError = GetToken(&op))
    return tokenError;
  return ParseAssignment(NodeKind::kAssign, name, op.op, declared);
}

ScriptError ProgramReader::ParseUnknownName(const Token& name, NodeIndex chain) {
  DeclarationIndex declared = kNoIndex;
  if (const ScriptError error = TakeUnknown(name, &declared))
    return error;
  Token next;
  if (const ScriptError error = GetToken(&next))
    return error;
  PutBack(next);
  if (!IsPunctuation(next, '(')) {
    Add({.kind = NodeKind::kName, .place = name.start, .value = declared});
    return kScriptOk;
  }
  const NodeIndex call = Add({.kind = NodeKind::kCall, .place = name.start, .value = declared});
  if (const ScriptError error = ParseArguments(name.value, chain))
    return error;
  m_program.nodes[call].end = Next();
  return kScriptOk;
}

// Whether parentheses come next that end a statement, as those of a call do.
bool ProgramReader::LooksLikeCall() {
  std::uint32_t position = m_position;
  const auto next = [&] {
    const Token token = m_program.scanner.Scan(position);
    position = token.kind == TokenKind::kMalformed ? EndOfMalformed(token) : token.end;
    return token;
  };
  if (!IsPunctuation(next(), '('))
    return false;
  for (unsigned open = 1; open > 0;) {
    const Token token = next();
    if (token.kind == TokenKind::kEnd || IsPunctuation(token, ';') || IsPunctuation(token, '{') ||
        IsPunctuation(token, '}'))
      return false;
    open += IsPunctuation(token, '(') ? 1 : 0;
    open -= IsPunctuation(token, ')') ? 1 : 0;
  }
  const Token behind = next();
  return behind.kind == TokenKind::kEnd || IsPunctuation(behind, ';') || IsPunctuation(behind, '}') ||
         (behind.kind == TokenKind::kIdentifier && IsFirstOnLine(behind));
}
