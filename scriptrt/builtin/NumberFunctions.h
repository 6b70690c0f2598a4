// Built-ins between numbers and texts. Several names share a class: see the table in BuiltIns.cpp.
#pragma once

#include "scriptrt/builtin/CONXScriptSysFunc.h"
#include "util/ScanNumber.h"

// strto…(s), hexstrto…(s): the number at the start of the text, as T; kTypeError if there is none
template <typename T, NumberFormat kFormat>
class CONXStrToNumFunc final : public CONXPureFunc {
public:
  using CONXPureFunc::CONXPureFunc;

private:
  PureFunction FunctionFor(std::span<const DataType>) const override {
    return [](CONXScriptVariable& result, const CONXScriptVariable& text, const CONXScriptVariable&,
              const CONXScriptVariable&) {
      const auto number = ScanNumber(ViewOf(text.text), kFormat);
      if (!number)
        return kTypeError;
      result.bits = static_cast<std::uint64_t>(static_cast<T>(*number));
      return kScriptOk;
    };
  }
};

// numtostr(n), numtohexstr(n) and their older names: the number by its own type
class CONXNumToStrFunc final : public CONXPureFunc {
public:
  enum class Base { kDecimal, kHexadecimal };
  CONXNumToStrFunc(const RunServices& services, Base base) : CONXPureFunc(services), m_base(base) {}

private:
  PureFunction FunctionFor(std::span<const DataType> types) const override;

  Base m_base;
};
