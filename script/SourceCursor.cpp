#include "script/SourceCursor.h"

ScriptError SourceCursor::GetToken(Token* token) {
  *token = m_source.TokenAt(m_next);
  m_tokenStart = token->start;
  if (token->kind == TokenKind::kMalformed)
    return static_cast<ScriptError>(token->value);
  ++m_next;
  return kScriptOk;
}

ScriptError SourceCursor::ExpectTokenKind(Token* token, TokenKind kind) {
  if (const ScriptError error = GetToken(token); error != kScriptOk)
    return error;
  return token->kind == kind ? kScriptOk : kUnexpectedToken;
}

ScriptError SourceCursor::ExpectToken(char punctuation, ScriptError error) {
  Token token;
  if (const ScriptError lexerError = GetToken(&token); lexerError != kScriptOk)
    return lexerError;
  return IsPunctuation(token, punctuation) ? kScriptOk : error;
}
