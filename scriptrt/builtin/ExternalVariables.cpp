#include "scriptrt/builtin/ExternalVariables.h"

#include "util/AsciiCase.h"

#include <algorithm>
#include <cstring>

namespace {

std::string NameOf(const TONXSCRIPTVARIABLE& record) {
  return record.name ? record.name : "";
}

template <typename T>
const T* PointerIn(const TONXSCRIPTVARIABLE& record) {
  return reinterpret_cast<const T*>(static_cast<std::uintptr_t>(record.value));
}

// Without a pointer the variable stays at zero or empty.
ScriptError SetValue(const TONXSCRIPTVARIABLE& record, CONXScriptVariable* value) {
  const auto type = static_cast<DataType>(record.type);
  value->Reset(type);
  if (record.value == 0)
    return kScriptOk;
  if (type == DataType::kString)
    return value->SetText({PointerIn<char>(record), static_cast<std::uint32_t>(record.length)});
  std::uint64_t number = 0;
  std::memcpy(&number, PointerIn<char>(record), sizeof number); // a host's buffer need not be aligned
  return value->SetNumber(number, type);
}

void WriteValue(const CONXScriptVariable& value, TONXSCRIPTVARIABLE* record) {
  record->type = static_cast<std::uint32_t>(value.GetType());
  if (value.GetType() == DataType::kString) {
    record->value = reinterpret_cast<std::uintptr_t>(value.GetText().data());
    record->length = value.GetText().size();
  } else {
    record->value = value.GetNumber();
  }
}

} // namespace

void ExternalVariables::Set(const TONXSCRIPTVARIABLE* records, std::size_t count, ExistingVariables existing) {
  if (existing == ExistingVariables::kForget)
    m_variables.clear();
  for (std::size_t i = 0; records && i < count; ++i) {
    const auto type = static_cast<DataType>(records[i].type);
    if (!IsNumeric(type) && type != DataType::kString)
      continue;
    Variable variable{NameOf(records[i]), {}};
    if (SetValue(records[i], &variable.value) == kScriptOk)
      m_variables.push_back(std::move(variable));
  }
}

std::uint64_t ExternalVariables::Get(TONXSCRIPTVARIABLE* records, std::size_t count) const {
  std::uint64_t found = 0;
  for (std::size_t i = 0; records && i < count; ++i) {
    const std::string name = NameOf(records[i]);
    for (const Variable& variable : m_variables) {
      if (!EqualsIgnoringCase(variable.name, name))
        continue;
      WriteValue(variable.value, &records[i]);
      ++found;
    }
  }
  return found;
}

void ExternalVariables::Declare(std::string_view name, DataType type) {
  const auto found = std::find_if(m_variables.begin(), m_variables.end(),
                                  [&](const Variable& variable) { return EqualsIgnoringCase(variable.name, name); });
  Variable& variable = found != m_variables.end() ? *found : m_variables.emplace_back();
  variable.name = name;
  variable.value.Reset(type);
}

std::vector<std::pair<std::string_view, CONXScriptVariable*>> ExternalVariables::ByName() {
  std::vector<std::pair<std::string_view, CONXScriptVariable*>> byName;
  for (Variable& variable : m_variables)
    byName.emplace_back(variable.name, &variable.value);
  return byName;
}
