#include "scriptrt/builtin/CONXScriptSysFunc.h"

#include <iterator>

namespace {

bool TakesType(char wanted, DataType type) {
  if (wanted == 's')
    return type == DataType::kString;
  return wanted != 'n' || IsNumeric(type);
}

// The letter for an argument; a trailing '*' stands for all that follow.
char WantedAt(std::string_view types, std::size_t index) {
  return index < types.size() ? types[index] : '*';
}

} // namespace

bool CONXScriptSysFunc::CheckArgumentCount(std::size_t count) const {
  if (m_rule.types.ends_with('*'))
    return count >= m_rule.types.size() - 1;
  return count < 32 && (m_rule.counts >> count & 1U) != 0;
}

ScriptError CONXScriptSysFunc::Execute(RunContext& context, ScriptArguments arguments, CONXScriptVariable* result) {
  if (context.StopEvent().IsAbandoned())
    return kProcessingAborted;
  if (!CheckArgumentCount(arguments.size()))
    return kWrongParameterCount;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (WantedAt(m_rule.types, i) != '*' && arguments[i].type == DataType::kFunction)
      return kTypeError;
  }
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (!TakesType(WantedAt(m_rule.types, i), arguments[i].GetType()))
      return kTypeError;
  }
  return Perform(SysCall{context, arguments, result});
}

bool CONXScriptSysFunc::TakesTypes(std::span<const DataType> types) const {
  for (std::size_t i = 0; i < types.size(); ++i)
    if (!TakesType(WantedAt(m_rule.types, i), types[i]))
      return false;
  return CheckArgumentCount(types.size());
}

ScriptError CONXPureFunc::Compute(const SysCall& call) {
  static const CONXScriptVariable kNothing;
  const CONXScriptVariable* arguments[] = {&kNothing, &kNothing, &kNothing};
  DataType types[std::size(arguments)];
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    arguments[i] = call.arguments[i].Target();
    types[i] = arguments[i]->type;
  }
  CONXScriptVariable value;
  if (const ScriptError error =
          FunctionFor({types, call.arguments.size()})(value, *arguments[0], *arguments[1], *arguments[2]))
    return error;
  if (IsNumeric(GetResultType()))
    value.type = GetResultType();
  return call.result->Assign(value);
}
