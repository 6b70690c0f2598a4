#include "scriptrt/builtin/NumberFunctions.h"

#include "script/NumberText.h"

ScriptError CONXNumToStrFunc::Compute(const SysCall& call) {
  const std::uint64_t number = call.NumberAt(0);
  const DataType type = call.VariableAt(0).GetType();
  return call.SetText(m_base == Base::kDecimal ? DecimalText(number, type) : HexadecimalText(number, type));
}
