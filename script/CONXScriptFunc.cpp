#include "script/CONXScriptFunc.h"

#include "script/ScriptProgram.h"

CONXScriptFunc::~CONXScriptFunc() {
  while (!m_locals.empty()) // the newest first
    m_locals.pop_back();
}

void CONXScriptFunc::AddDeclaration(std::unique_ptr<CONXScriptObject> object) {
  const auto index = static_cast<std::uint32_t>(m_locals.size());
  const auto [latest, isFirst] = m_latestOfName.try_emplace(object->GetNameId(), index);
  const std::uint32_t slot = object->GetObjectKind() == ObjectKind::kTemplate ? m_variableCount++ : kNone;
  m_locals.push_back({std::move(object), slot, isFirst ? kNone : latest->second});
  latest->second = index;
}

CONXScriptFunc& CONXScriptFunc::AddBlock(std::unique_ptr<CONXScriptFunc> block) {
  CONXScriptFunc& added = *block;
  m_locals.push_back({std::move(block), kNone, kNone});
  added.m_outer = {this, m_locals.size(), true};
  return added;
}

FoundName CONXScriptFunc::FindName(NameId name) const {
  FoundName found = FindInBody(name, m_locals.size(), true);
  std::uint32_t hops = 0;
  const OuterNames* outer = &m_outer;
  while (found.kind == FoundName::Kind::kNothing && outer->scope) {
    found = outer->scope->FindInBody(name, outer->localCount, outer->withParameters);
    found.hops = ++hops;
    outer = &outer->scope->m_outer;
  }
  return found.kind == FoundName::Kind::kNothing ? m_program->FindPredefined(name) : found;
}

FoundName CONXScriptFunc::FindInBody(NameId name, std::size_t localCount, bool withParameters) const {
  FoundName found;
  for (std::size_t i = withParameters ? m_parameters.size() : 0; i-- > 0;) {
    if (m_parameters[i]->GetNameId() != name)
      continue;
    const bool isFunction = m_parameters[i]->GetObjectKind() == ObjectKind::kFunction;
    found.kind = isFunction ? FoundName::Kind::kFunctionParameter : FoundName::Kind::kParameter;
    found.slot = static_cast<std::uint32_t>(i);
    return found;
  }
  const auto latest = m_latestOfName.find(name);
  std::uint32_t index = latest == m_latestOfName.end() ? kNone : latest->second;
  while (index != kNone && index >= localCount)
    index = m_locals[index].earlierSameName;
  if (index == kNone)
    return found;
  const Local& local = m_locals[index];
  if (local.object->GetObjectKind() == ObjectKind::kTemplate) {
    found.kind = FoundName::Kind::kVariable;
    found.slot = local.slot;
  } else {
    found.kind = FoundName::Kind::kFunction;
    found.function = static_cast<CONXScriptFunc*>(local.object.get());
  }
  return found;
}

// A statement's names are looked up when it first runs, with all declarations of its body in place, and remembered by
// token.
FoundName CONXScriptFunc::Resolve(const Token& token, TokenIndex place) const {
  if (const FoundName* known = m_program->KnownName(token))
    return *known;
  const FoundName found = FindName(token.value);
  m_program->RememberName(place, found);
  return found;
}

CONXScriptVariable* CONXScriptFunc::VariableOf(const FoundName& found, Activation& activation) {
  Activation* scope = &activation;
  for (std::uint32_t i = 0; i < found.hops; ++i)
    scope = scope->outer;
  switch (found.kind) {
  case FoundName::Kind::kVariable:
    return &scope->variables[found.slot];
  case FoundName::Kind::kParameter:
    return &(*scope->arguments)[found.slot].variable;
  default:
    return found.variable;
  }
}

FunctionValue CONXScriptFunc::FunctionOf(const FoundName& found, Activation& activation) {
  Activation* scope = &activation;
  for (std::uint32_t i = 0; i < found.hops; ++i)
    scope = scope->outer;
  if (found.kind == FoundName::Kind::kFunctionParameter)
    return (*scope->arguments)[found.slot].function;
  return {found.function, scope};
}
