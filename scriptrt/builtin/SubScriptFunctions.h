// Built-ins that run another script file inside the call.
//
// A sub-script has its own names, built-ins and base directory (the folder of its file); it shares the stop event, the
// channel and the output with the script that called it. Its error is the call's error, an `exit` in it ends both.
#pragma once

#include "scriptrt/builtin/CONXScriptSysFunc.h"

class CONXSubScriptOp : public CONXScriptSysFunc {
protected:
  using CONXScriptSysFunc::CONXScriptSysFunc;

  // Runs the script file that the first argument names: its main program, or the function to start. Says in the output
  // where an error happened.
  ScriptError RunFile(const SysCall& call, FunctionStart* function) const;
};

// executesubscript(file)
class CONXExecuteSubScript final : public CONXSubScriptOp {
public:
  using CONXSubScriptOp::CONXSubScriptOp;

private:
  ScriptError Perform(const SysCall& call) override;
};

// executesubscriptfunc(file, function, …): the value of that function, called with the further arguments
class CONXExecuteSubScriptFunc final : public CONXSubScriptOp {
public:
  using CONXSubScriptOp::CONXSubScriptOp;

private:
  ScriptError Perform(const SysCall& call) override;
};
