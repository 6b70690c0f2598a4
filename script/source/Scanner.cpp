#include "script/source/Scanner.h"

#include "util/AsciiCase.h"
#include "util/EscapedString.h"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>

namespace {

enum CharClass : std::uint8_t {
  kOther = 0,
  kSpace = 1,
  kDigit = 2,
  kBinaryDigit = 4,
  kHexadecimalDigit = 8,
  kLetter = 16,
  kSuffixLetter = 32,
  kOperatorStart = 64,
};

constexpr std::array<std::uint8_t, 256> kClasses = [] {
  std::array<std::uint8_t, 256> classes{};
  const auto add = [&](std::string_view characters, CharClass charClass) {
    for (const char c : characters)
      classes[static_cast<unsigned char>(c)] |= charClass;
  };
  add(" \t\r\n", kSpace);
  add("0123456789", kDigit);
  add("01", kBinaryDigit);
  add("0123456789ABCDEFabcdef", kHexadecimalDigit);
  add("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_", kLetter);
  add("UuSsLlHh", kSuffixLetter);
  add("=+-*/%&|^><!~", kOperatorStart);
  return classes;
}();

bool Is(char c, unsigned classes) {
  return (kClasses[static_cast<unsigned char>(c)] & classes) != 0;
}

void Fail(Token* token, ScriptError error) {
  token->kind = TokenKind::kMalformed;
  token->value = error;
  token->end = token->start;
}

} // namespace

Scanner::Scanner(std::string_view text, NameTable& names) : m_text(text), m_names(names) {
  if (text.size() >= std::numeric_limits<std::uint32_t>::max())
    throw std::length_error("script too long");
}

// A comment that the text ends in does not move the start.
void Scanner::SkipSpace(std::uint32_t* position, std::uint32_t* start) const {
  for (;;) {
    while (Is(CharAt(*position), kSpace))
      ++*position;
    if (CharAt(*position) != '#')
      return;
    const std::size_t lineEnd = m_text.find_first_of(std::string_view("\r\n\0", 3), *position);
    *position = static_cast<std::uint32_t>(std::min(lineEnd, m_text.size()));
    if (CharAt(*position) == '\0')
      return;
    *start = ++*position;
  }
}

Token Scanner::Scan(std::uint32_t position) {
  Token token;
  token.start = position;
  SkipSpace(&position, &token.start);
  token.begin = position;
  token.end = position;

  const char c = CharAt(position);
  if (c == '\0') {
    token.kind = TokenKind::kEnd;
  } else if (Is(c, kLetter)) {
    ScanIdentifier(&token);
  } else if (Is(c, kDigit)) {
    ScanNumber(&token);
  } else if (c == '"') {
    ScanString(&token);
  } else if (Is(c, kOperatorStart)) {
    const OperatorMatch match = MatchOperator(m_text.substr(position));
    token.kind = TokenKind::kOperator;
    token.op = match.op;
    token.end += static_cast<std::uint32_t>(match.length);
  } else {
    token.kind = TokenKind::kPunctuation;
    token.value = static_cast<unsigned char>(c);
    ++token.end;
  }
  return token;
}

std::uint32_t Scanner::StartBehind(std::uint32_t start) const {
  std::uint32_t position = start;
  SkipSpace(&position, &start);
  if (!Is(CharAt(position), kLetter))
    ++position;
  while (Is(CharAt(position), kLetter | kDigit))
    ++position;
  start = position;
  SkipSpace(&position, &start);
  return start;
}

void Scanner::ScanString(Token* token) const {
  const std::string_view rest = m_text.substr(token->begin + 1);
  std::size_t consumed = 0;
  int ok = 0;
  static_cast<void>(ParseString(rest.data(), rest.size(), '"', &consumed, nullptr, &ok));
  if (!ok) {
    Fail(token, kErrorInString);
    return;
  }
  token->kind = TokenKind::kString;
  token->end = token->begin + 1 + static_cast<std::uint32_t>(consumed);
}

SharedText Scanner::TextOf(const Token& token) const {
  const std::string_view inside = m_text.substr(token.begin + 1, token.end - token.begin - 2);
  if (inside.find('\\') == std::string_view::npos)
    return SharedText(inside);
  std::size_t consumed = 0;
  int ok = 0;
  return SharedText(ParseString(inside.data(), m_text.size() - token.begin - 1, '"', &consumed, nullptr, &ok));
}

void Scanner::ScanNumber(Token* token) const {
  const char prefix = AsciiLower(CharAt(token->begin + 1));
  if (CharAt(token->begin) != '0' || (prefix != 'x' && prefix != 'b')) {
    ScanDecimal(token);
    return;
  }
  const bool hexadecimal = prefix == 'x';
  const CharClass digit = hexadecimal ? kHexadecimalDigit : kBinaryDigit;
  const std::uint32_t digits = token->begin + 2;
  std::uint32_t position = digits;
  while (Is(CharAt(position), digit))
    ++position;
  if (position == digits) {
    Fail(token, kSyntaxError);
    return;
  }
  if (CharAt(position) == ':') {
    const std::uint32_t letters = ++position;
    while (Is(CharAt(position), kSuffixLetter))
      ++position;
    if (position == letters) {
      Fail(token, kSyntaxError);
      return;
    }
  }
  token->kind = hexadecimal ? TokenKind::kHexadecimal : TokenKind::kBinary;
  token->end = position;
  const std::string_view text = m_text.substr(digits, position - digits);
  token->number = hexadecimal ? HexadecimalLiteral(text) : BinaryLiteral(text);
}

void Scanner::ScanDecimal(Token* token) const {
  std::uint32_t position = token->begin;
  while (Is(CharAt(position), kDigit))
    ++position;
  if (CharAt(position) == ':') {
    ++position;
    while (Is(CharAt(position), kSuffixLetter))
      ++position;
  }
  token->kind = TokenKind::kDecimal;
  token->end = position;
  token->number = DecimalLiteral(m_text.substr(token->begin, position - token->begin));
}

void Scanner::ScanIdentifier(Token* token) {
  std::uint32_t position = token->begin;
  while (Is(CharAt(position), kLetter | kDigit))
    ++position;
  token->kind = TokenKind::kIdentifier;
  token->end = position;
  token->value = m_names.Intern(m_text.substr(token->begin, position - token->begin));
}
