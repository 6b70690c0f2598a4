// Cuts a script's text into tokens, one at a time.
#pragma once

#include "script/source/Names.h"
#include "script/value/CONXScriptVariable.h"
#include "script/value/Literals.h"
#include "script/value/ScriptError.h"

#include <cstdint>
#include <string_view>

enum class TokenKind : std::uint8_t {
  kPunctuation = 0, // one character that starts no other token
  kIdentifier = 1,  // keywords too
  kString = 2,
  kDecimal = 3,
  kHexadecimal = 4,
  kBinary = 5,
  kOperator = 6,
  kEnd = 7,
  kMalformed = 255, // reading it fails
};

struct Token {
  std::uint32_t start = 0; // where reading it began: behind the token or comment before it, in front of white space
  std::uint32_t begin = 0; // its first character
  std::uint32_t end = 0;   // behind its last character; of a malformed token: its start
  std::uint32_t value = 0; // identifier: NameId; punctuation: the character; malformed: the error
  TokenKind kind = TokenKind::kEnd;
  Operator op = Operator::kAssign; // operators
  Literal number;                  // kDecimal, kHexadecimal, kBinary
};

class Scanner {
public:
  // The text and the table must outlive the scanner. Texts of 4 GiB and more throw std::length_error.
  Scanner(std::string_view text, NameTable& names);

  // The token that stands at or behind `position`.
  Token Scan(std::uint32_t position);
  // What a string token stands for.
  SharedText TextOf(const Token& token) const;
  // Where reading the token behind the one at `start` begins; that one is a name, a word or a punctuation character.
  std::uint32_t StartBehind(std::uint32_t start) const;

  std::string_view Text() const { return m_text; }

private:
  // Moves `position` to the next token's first character and `start` behind the last comment in front of it.
  void SkipSpace(std::uint32_t* position, std::uint32_t* start) const;
  void ScanString(Token* token) const;
  void ScanNumber(Token* token) const;
  void ScanDecimal(Token* token) const;
  void ScanIdentifier(Token* token);
  char CharAt(std::uint32_t position) const { return position < m_text.size() ? m_text[position] : '\0'; }

  std::string_view m_text;
  NameTable& m_names;
};

inline bool IsPunctuation(const Token& token, char c) {
  return token.kind == TokenKind::kPunctuation && token.value == static_cast<unsigned char>(c);
}
inline bool IsName(const Token& token, NameId name) {
  return token.kind == TokenKind::kIdentifier && token.value == name;
}
inline bool IsOperatorOf(const Token& token, OperatorClassFlag flag) {
  return token.kind == TokenKind::kOperator && (OperatorClass(token.op) & flag) != 0;
}
