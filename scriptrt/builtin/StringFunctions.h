// Built-ins for output and texts. Texts are bytes, zero bytes among them; positions count from 0.
#pragma once

#include "scriptrt/builtin/CONXScriptSysFunc.h"

// print(…): each argument by itself, numbers in decimal, zero bytes as "\0"; nothing between or behind them.
class CONXPrintFunc final : public CONXScriptSysFunc {
public:
  using CONXScriptSysFunc::CONXScriptSysFunc;

private:
  ScriptError Perform(const SysCall& call) override;
};

// strlen(s): bytes, as uint32
class CONXStrlenFunc final : public CONXPureFunc {
public:
  using CONXPureFunc::CONXPureFunc;

private:
  PureFunction FunctionFor(std::span<const DataType> types) const override;
};

// substr(s, start [, length])
class CONXSubStrFunc final : public CONXPureFunc {
public:
  using CONXPureFunc::CONXPureFunc;

private:
  PureFunction FunctionFor(std::span<const DataType> types) const override;
};

// instr(s, searched [, start]): where `searched` first begins at or behind `start`, as int32; -1 if nowhere
class CONXInstrFunc final : public CONXPureFunc {
public:
  using CONXPureFunc::CONXPureFunc;

private:
  PureFunction FunctionFor(std::span<const DataType> types) const override;
};

// ascii(s): the first byte, as uint32; 0 for the empty text
class CONXASCIIFunc final : public CONXPureFunc {
public:
  using CONXPureFunc::CONXPureFunc;

private:
  PureFunction FunctionFor(std::span<const DataType> types) const override;
};

// chr(n): the text of one byte, the low 8 bits of n
class CONXChrFunc final : public CONXPureFunc {
public:
  using CONXPureFunc::CONXPureFunc;

private:
  PureFunction FunctionFor(std::span<const DataType> types) const override;
};
