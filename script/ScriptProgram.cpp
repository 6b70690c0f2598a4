#include "script/ScriptProgram.h"

ScriptProgram::ScriptProgram(std::string_view text, CONXRunContext& context) : m_source(text), m_context(context) {
  constexpr std::string_view kMain = "@MAIN"; // no identifier, so that no script can name it
  m_main.SetName(kMain, m_source.Names().Intern(kMain));
}

void ScriptProgram::AddPredefined(std::string_view name, CONXScriptVariable& variable) {
  FoundName found;
  found.kind = FoundName::Kind::kPredefinedVariable;
  found.variable = &variable;
  m_predefined[m_source.Names().Intern(name)] = found;
}

void ScriptProgram::AddPredefined(std::string_view name, CONXScriptFunc& function) {
  FoundName found;
  found.kind = FoundName::Kind::kPredefinedFunction;
  found.function = &function;
  m_predefined[m_source.Names().Intern(name)] = found;
}

FoundName ScriptProgram::FindPredefined(NameId name) const {
  const auto found = m_predefined.find(name);
  return found == m_predefined.end() ? FoundName() : found->second;
}

void ScriptProgram::RememberName(TokenIndex place, const FoundName& found) {
  m_knownNames.push_back(found);
  m_source.SetNote(place, static_cast<std::uint32_t>(m_knownNames.size()));
}
