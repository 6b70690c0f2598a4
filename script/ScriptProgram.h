// One script while it is read and run: its text, its main function, the names that are there from the start.
#pragma once

#include "script/CONXScriptFunc.h"
#include "script/RunContext.h"
#include "script/ScriptSource.h"
#include "script/SourceCursor.h"

#include <deque>
#include <string_view>
#include <unordered_map>

class ScriptProgram {
public:
  // The text, followed by a zero byte, and the context must outlive the program.
  ScriptProgram(std::string_view text, CONXRunContext& context);

  // Adds a name that the whole program sees. Later ones hide earlier ones. The object must outlive the program.
  void AddPredefined(std::string_view name, CONXScriptVariable& variable);
  void AddPredefined(std::string_view name, CONXScriptFunc& function);

  // Reads the whole text. Nothing may run if it fails.
  ScriptError Parse() { return m_main.ParseBody(m_cursor, 0); }

  CONXScriptFunc& Main() { return m_main; }
  SourceCursor& Cursor() { return m_cursor; }
  CONXRunContext& Context() { return m_context; }

  FoundName FindPredefined(NameId name) const;
  // What a name's token led to when it first ran; null before that.
  const FoundName* KnownName(const Token& token) const { return token.note ? &m_knownNames[token.note - 1] : nullptr; }
  void RememberName(TokenIndex place, const FoundName& found);

private:
  ScriptSource m_source;
  SourceCursor m_cursor{m_source};
  CONXRunContext& m_context;
  std::unordered_map<NameId, FoundName> m_predefined;
  std::deque<FoundName> m_knownNames;
  CONXScriptFunc m_main{this};
};
