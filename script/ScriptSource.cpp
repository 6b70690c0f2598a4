#include "script/ScriptSource.h"

#include "util/EscapedString.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace {

bool IsWhitespace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsBinaryDigit(char c) {
  return c == '0' || c == '1';
}
bool IsHexadecimalDigit(char c) {
  return IsDigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}
bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}
bool IsSuffixLetter(char c) {
  return c != '\0' && std::string_view("UuSsLlHh").find(c) != std::string_view::npos;
}

void Fail(Token* token, ScriptError error) {
  token->kind = TokenKind::kMalformed;
  token->value = error;
}

} // namespace

ScriptSource::ScriptSource(std::string_view text) : m_text(text) {
  if (text.size() >= std::numeric_limits<std::uint32_t>::max())
    throw std::length_error("script too long");
}

const Token& ScriptSource::Read() {
  if (!m_ended) {
    const Token token = Scan(m_count == 0 ? 0 : At(m_count - 1).end);
    Append(token);
    m_ended = token.kind == TokenKind::kMalformed;
  }
  return At(m_count - 1);
}

void ScriptSource::Append(const Token& token) {
  if ((m_count & (kChunkSize - 1)) == 0)
    m_chunks.push_back(std::make_unique<Token[]>(kChunkSize));
  m_chunks.back()[m_count & (kChunkSize - 1)] = token;
  ++m_count;
}

Token ScriptSource::Scan(std::uint32_t position) {
  Token token{};
  token.start = position;
  for (;;) {
    while (IsWhitespace(CharAt(position)))
      ++position;
    if (CharAt(position) != '#')
      break;
    // A comment moves the start of the token behind it, unless the text ends in it.
    const std::size_t lineEnd = m_text.find_first_of(std::string_view("\r\n\0", 3), position);
    if (lineEnd == std::string_view::npos || m_text[lineEnd] == '\0') {
      position = static_cast<std::uint32_t>(std::min(lineEnd, m_text.size()));
      break;
    }
    position = static_cast<std::uint32_t>(lineEnd) + 1;
    token.start = position;
  }
  token.begin = position;
  token.end = position;

  const char c = CharAt(position);
  if (c == '\0') {
    token.kind = TokenKind::kEnd;
  } else if (c == '"') {
    ScanString(&token);
  } else if (const OperatorMatch match = MatchOperator(m_text.substr(position)); match.length != 0) {
    token.kind = TokenKind::kOperator;
    token.op = match.op;
    token.end += static_cast<std::uint32_t>(match.length);
  } else if (IsDigit(c)) {
    ScanNumber(&token);
  } else if (IsLetter(c)) {
    ScanIdentifier(&token);
  } else {
    token.kind = TokenKind::kPunctuation;
    token.value = static_cast<unsigned char>(c);
    ++token.end;
  }
  return token;
}

void ScriptSource::ScanString(Token* token) {
  const std::string_view rest = m_text.substr(token->begin + 1);
  std::size_t consumed = 0;
  int ok = 0;
  std::string bytes = ParseString(rest.data(), rest.size(), '"', &consumed, nullptr, &ok);
  if (!ok) {
    Fail(token, kErrorInString);
    return;
  }
  token->kind = TokenKind::kString;
  token->end = token->begin + 1 + static_cast<std::uint32_t>(consumed);
  Literal literal;
  literal.type = DataType::kString;
  literal.text = SharedText(std::move(bytes));
  token->value = AddLiteral(std::move(literal));
}

void ScriptSource::ScanNumber(Token* token) {
  const char prefix = static_cast<char>(CharAt(token->begin + 1) | 0x20);
  if (CharAt(token->begin) != '0' || (prefix != 'x' && prefix != 'b')) {
    ScanDecimal(token);
    return;
  }
  const bool hexadecimal = prefix == 'x';
  const auto isDigit = hexadecimal ? IsHexadecimalDigit : IsBinaryDigit;
  const std::uint32_t digits = token->begin + 2;
  std::uint32_t position = digits;
  while (isDigit(CharAt(position)))
    ++position;
  if (position == digits) {
    Fail(token, kSyntaxError);
    return;
  }
  if (CharAt(position) == ':') {
    const std::uint32_t letters = ++position;
    while (IsSuffixLetter(CharAt(position)))
      ++position;
    if (position == letters) {
      Fail(token, kSyntaxError);
      return;
    }
  }
  token->kind = hexadecimal ? TokenKind::kHexadecimal : TokenKind::kBinary;
  token->end = position;
  const std::string_view text = m_text.substr(digits, position - digits);
  token->value = AddLiteral(hexadecimal ? HexadecimalLiteral(text) : BinaryLiteral(text));
}

void ScriptSource::ScanDecimal(Token* token) {
  std::uint32_t position = token->begin;
  while (IsDigit(CharAt(position)))
    ++position;
  if (CharAt(position) == ':') {
    ++position;
    while (IsSuffixLetter(CharAt(position)))
      ++position;
  }
  token->kind = TokenKind::kDecimal;
  token->end = position;
  token->value = AddLiteral(DecimalLiteral(m_text.substr(token->begin, position - token->begin)));
}

void ScriptSource::ScanIdentifier(Token* token) {
  std::uint32_t position = token->begin;
  while (IsLetter(CharAt(position)) || IsDigit(CharAt(position)))
    ++position;
  token->kind = TokenKind::kIdentifier;
  token->end = position;
  token->value = m_names.Intern(m_text.substr(token->begin, position - token->begin));
}

std::uint32_t ScriptSource::AddLiteral(Literal literal) {
  m_literals.push_back(std::move(literal));
  return static_cast<std::uint32_t>(m_literals.size() - 1);
}
