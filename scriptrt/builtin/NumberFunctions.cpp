#include "scriptrt/builtin/NumberFunctions.h"

#include "script/value/NumberText.h"

namespace {

template <std::string (*kText)(std::uint64_t, DataType), DataType kType>
ScriptError SetNumberText(CONXScriptVariable& result, const CONXScriptVariable& number, const CONXScriptVariable&,
                          const CONXScriptVariable&) {
  result.text = NewText(kText(number.bits, kType));
  result.type = DataType::kString;
  return kScriptOk;
}

} // namespace

PureFunction CONXNumToStrFunc::FunctionFor(std::span<const DataType> types) const {
  if (m_base == Base::kDecimal)
    return IsSigned(types[0]) ? SetNumberText<DecimalText, DataType::kInt64>
                              : SetNumberText<DecimalText, DataType::kUint64>;
  return Is64Bit(types[0]) ? SetNumberText<HexadecimalText, DataType::kUint64>
                           : SetNumberText<HexadecimalText, DataType::kUint32>;
}
