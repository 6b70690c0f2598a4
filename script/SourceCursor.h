// A reading position in a source. Copying a cursor's place and restoring it is how the parser looks ahead.
#pragma once

#include "script/ScriptSource.h"

class SourceCursor {
public:
  explicit SourceCursor(ScriptSource& source) : m_source(source) {}

  // Reads the next token. A malformed one gives its error and is not passed.
  ScriptError GetToken(Token* token);
  // Reads the next token, which must be of this kind: otherwise kUnexpectedToken.
  ScriptError ExpectTokenKind(Token* token, TokenKind kind);
  // Reads the next token, which must be this punctuation character: otherwise `error`. A malformed token keeps its own
  // error.
  ScriptError ExpectToken(char punctuation, ScriptError error = kUnexpectedToken);

  // The next token to read.
  TokenIndex Place() const { return m_next; }
  void SetPlace(TokenIndex place) { m_next = place; }
  // Offset in the text where the last read began: the place that an error is reported at.
  std::uint32_t TokenStart() const { return m_tokenStart; }

  ScriptSource& Source() const { return m_source; }

private:
  ScriptSource& m_source;
  TokenIndex m_next = 0;
  std::uint32_t m_tokenStart = 0;
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
