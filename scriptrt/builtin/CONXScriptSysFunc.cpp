#include "scriptrt/builtin/CONXScriptSysFunc.h"

namespace {

ScriptError CheckArgument(const ScriptArgument& argument, char wanted) {
  if (wanted == 's')
    return argument.variable.GetType() == DataType::kString ? kScriptOk : kTypeError;
  if (wanted == 'n')
    return IsNumeric(argument.variable.GetType()) ? kScriptOk : kTypeError;
  return kScriptOk;
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

ScriptError CONXScriptSysFunc::Execute(CONXRunContext& context, Activation* symbols, ScriptArguments& arguments,
                                       CONXScriptVariable* result) {
  if (context.StopEvent().IsAbandoned())
    return kProcessingAborted;
  if (!CheckArgumentCount(arguments.size()))
    return kWrongParameterCount;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (WantedAt(m_rule.types, i) != '*' && !arguments[i].IsVariable())
      return kTypeError;
  }
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (const ScriptError error = CheckArgument(arguments[i], WantedAt(m_rule.types, i)))
      return error;
  }
  return Perform(SysCall{context, symbols, arguments, result});
}
