// Built-ins that ask the user. The script waits for the answer; without a prompter every question counts as
// cancelled.
#pragma once

#include "scriptrt/builtin/CONXScriptSysFunc.h"

// messagebox(caption, text)
class CONXMessageBoxDialog final : public CONXScriptSysFunc {
public:
  using CONXScriptSysFunc::CONXScriptSysFunc;

private:
  ScriptError Perform(const SysCall& call) override;
};

// userinput…(caption, prompt, default [, minimum, maximum [, confirmed]]): a number of the type
class CONXUserInputNumDialog final : public CONXScriptSysFunc {
public:
  CONXUserInputNumDialog(const RunServices& services, DataType type) : CONXScriptSysFunc(services), m_type(type) {}

private:
  ScriptError Perform(const SysCall& call) override;

  DataType m_type;
};

// userinputstring(caption, prompt, default [, confirmed])
class CONXUserInputStringDialog final : public CONXScriptSysFunc {
public:
  using CONXScriptSysFunc::CONXScriptSysFunc;

private:
  ScriptError Perform(const SysCall& call) override;
};

// userlistinput(caption, prompt, items, default [, confirmed]): index of the chosen item as int32, -1 if cancelled
class CONXUserListInputDialog final : public CONXScriptSysFunc {
public:
  using CONXScriptSysFunc::CONXScriptSysFunc;

private:
  ScriptError Perform(const SysCall& call) override;
};
