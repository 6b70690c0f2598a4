// A script's text and what has been read of it. Each token is read once: the source remembers tokens in the order of
// the text, and a place in a program is the number of the token that comes next.
#pragma once

#include "script/Literals.h"
#include "script/Names.h"
#include "script/Operators.h"
#include "script/ScriptError.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

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

// Number of a token within its source.
using TokenIndex = std::uint32_t;

struct Token {
  std::uint32_t start; // where reading it began: behind the token or comment before it, in front of white space
  std::uint32_t begin; // its first character
  std::uint32_t end;   // behind its last character
  std::uint32_t
      value; // identifier: NameId; literal: index of its Literal; punctuation: the character; malformed: the error
  std::uint32_t note; // kept for the source's user by SetNote; 0 at first
  TokenKind kind;
  Operator op; // operators
};

// [one thread]
class ScriptSource {
public:
  // The text must outlive the source. Texts of 4 GiB and more throw std::length_error.
  explicit ScriptSource(std::string_view text);
  ScriptSource(const ScriptSource&) = delete;
  ScriptSource& operator=(const ScriptSource&) = delete;

  std::string_view Text() const { return m_text; }
  // The token of this number; numbers beyond a malformed token give that one again. Behind the end of the text comes
  // the end again, which then starts where the text ends. At most one further than the highest number asked for so far.
  const Token& TokenAt(TokenIndex index) { return index < m_count ? At(index) : Read(); }
  std::string_view TextOf(const Token& token) const { return m_text.substr(token.begin, token.end - token.begin); }
  const Literal& LiteralOf(const Token& token) const { return m_literals[token.value]; }
  // Attaches a number to a token that has been read, to be found in it later.
  void SetNote(TokenIndex index, std::uint32_t note) {
    m_chunks[index >> kChunkBits][index & (kChunkSize - 1)].note = note;
  }
  NameTable& Names() { return m_names; }

private:
  static constexpr unsigned kChunkBits = 10;
  static constexpr std::uint32_t kChunkSize = 1U << kChunkBits;

  const Token& At(TokenIndex index) const { return m_chunks[index >> kChunkBits][index & (kChunkSize - 1)]; }
  const Token& Read();
  void Append(const Token& token);
  Token Scan(std::uint32_t position);
  void ScanString(Token* token);
  void ScanNumber(Token* token);
  void ScanDecimal(Token* token);
  void ScanIdentifier(Token* token);
  std::uint32_t AddLiteral(Literal literal);
  char CharAt(std::uint32_t position) const { return position < m_text.size() ? m_text[position] : '\0'; }

  std::string_view m_text;
  std::vector<std::unique_ptr<Token[]>> m_chunks; // chunks never move, so that growing copies nothing
  std::uint32_t m_count = 0;
  bool m_ended = false; // the last token is malformed
  std::deque<Literal> m_literals;
  NameTable m_names;
};
