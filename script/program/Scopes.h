// Which declaration a name leads to while a program is read. Looking up and declaring take the same time however deep
// blocks nest and however many names there are.
#pragma once

#include "script/program/Declaration.h"

// A body sees its parameters in front of its own names and those in front of the names from outside; the latest
// declaration wins. A function does not see the parameters of the body that it stands in directly.
class Scopes {
public:
  explicit Scopes(std::deque<Declaration>& declarations) : m_declarations(declarations) {}

  // kNoIndex if nothing of this name is visible.
  DeclarationIndex Find(NameId name) const;
  // Makes a declaration visible in the body that was entered last, and part of it.
  void Declare(DeclarationIndex index, CONXScriptBlock& block);
  // The same for one that is there from the start.
  void DeclareOutside(DeclarationIndex index);
  void Leave(const CONXScriptBlock& block);
  // Of a function, by its number.
  void HideParameters(std::uint32_t function);
  void ShowParameters(std::uint32_t function) { m_hidden[function] = false; }

private:
  DeclarationIndex& Latest(NameId name);
  bool IsHidden(const Declaration& declaration) const;

  std::deque<Declaration>& m_declarations;
  std::vector<DeclarationIndex> m_latest; // by name
  std::vector<bool> m_hidden;             // by function
};
