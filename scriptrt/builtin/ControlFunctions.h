// Built-ins that wait, end the run, or read the clock.
#pragma once

#include "scriptrt/builtin/CONXScriptSysFunc.h"

// delay(milliseconds): the low 32 bits count, all ones wait without limit; a stop request ends it at once
class CONXDelayFunc final : public CONXScriptSysFunc {
public:
  using CONXScriptSysFunc::CONXScriptSysFunc;

private:
  ScriptError Perform(const SysCall& call) override;
};

// exit(): ends the run, and the run of the script that started this one
class CONXExitFunc final : public CONXScriptSysFunc {
public:
  using CONXScriptSysFunc::CONXScriptSysFunc;

private:
  ScriptError Perform(const SysCall& call) override;
};

// getsysdate(): "16.11.2026", local time
class CONXGetSysDateFunc final : public CONXValueFunc {
public:
  using CONXValueFunc::CONXValueFunc;

private:
  ScriptError Compute(const SysCall& call) override;
};

// getsystime(): "05:07:30", local time
class CONXGetSysTimeFunc final : public CONXValueFunc {
public:
  using CONXValueFunc::CONXValueFunc;

private:
  ScriptError Compute(const SysCall& call) override;
};
