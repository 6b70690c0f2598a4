#include "script/program/Scopes.h"

DeclarationIndex& Scopes::Latest(NameId name) {
  if (name >= m_latest.size())
    m_latest.resize(name + std::size_t{1} + m_latest.size() / 2, kNoIndex);
  return m_latest[name];
}

bool Scopes::IsHidden(const Declaration& declaration) const {
  return declaration.IsParameter() && declaration.function < m_hidden.size() && m_hidden[declaration.function];
}

DeclarationIndex Scopes::Find(NameId name) const {
  DeclarationIndex index = name < m_latest.size() ? m_latest[name] : kNoIndex;
  while (index != kNoIndex && IsHidden(m_declarations[index]))
    index = m_declarations[index].hidden;
  return index;
}

void Scopes::DeclareOutside(DeclarationIndex index) {
  DeclarationIndex& latest = Latest(m_declarations[index].name);
  m_declarations[index].hidden = latest;
  latest = index;
}

void Scopes::Declare(DeclarationIndex index, CONXScriptBlock& block) {
  Declaration& declared = m_declarations[index];
  if (block.lastDeclaration == kNoIndex)
    block.firstDeclaration = index;
  else
    m_declarations[block.lastDeclaration].next = index;
  block.lastDeclaration = index;
  DeclarationIndex* place = &Latest(declared.name);
  // The body's own parameters stay in front.
  if (!declared.IsParameter()) {
    while (*place != kNoIndex && m_declarations[*place].body == declared.body && m_declarations[*place].IsParameter())
      place = &m_declarations[*place].hidden;
  }
  declared.hidden = *place;
  *place = index;
}

void Scopes::Leave(const CONXScriptBlock& block) {
  for (DeclarationIndex index = block.firstDeclaration; index != kNoIndex; index = m_declarations[index].next) {
    DeclarationIndex* place = &Latest(m_declarations[index].name);
    while (*place != kNoIndex && m_declarations[*place].body == block.number)
      *place = m_declarations[*place].hidden;
  }
}

void Scopes::HideParameters(std::uint32_t function) {
  if (function >= m_hidden.size())
    m_hidden.resize(function + std::size_t{1} + m_hidden.size() / 2);
  m_hidden[function] = true;
}
