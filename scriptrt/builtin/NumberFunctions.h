// Built-ins between numbers and texts. Several names share a class: see the table in BuiltIns.cpp.
#pragma once

#include "scriptrt/builtin/CONXScriptSysFunc.h"
#include "util/ScanNumber.h"

// strto…(s), hexstrto…(s): the number at the start of the text, as T; kTypeError if there is none
template <typename T>
class CONXStrToNumFunc final : public CONXValueFunc {
public:
  CONXStrToNumFunc(const RunServices& services, NumberFormat format, DataType type)
      : CONXValueFunc(services), m_format(format), m_type(type) {}

private:
  ScriptError Compute(const SysCall& call) override {
    const std::string& text = call.TextAt(0).Bytes();
    const auto number = ScanNumber(text, m_format);
    if (!number)
      return kTypeError;
    return call.SetNumber(static_cast<std::uint64_t>(static_cast<T>(*number)), m_type);
  }

  NumberFormat m_format;
  DataType m_type;
};

// numtostr(n), numtohexstr(n) and their older names: the number by its own type
class CONXNumToStrFunc final : public CONXValueFunc {
public:
  enum class Base { kDecimal, kHexadecimal };
  CONXNumToStrFunc(const RunServices& services, Base base) : CONXValueFunc(services), m_base(base) {}

private:
  ScriptError Compute(const SysCall& call) override;

  Base m_base;
};
