// The seams for whoever looks on while a program runs: coverage, a profile, a debugger. A run without a watcher has no
// code for it.
#pragma once

#include <cstdint>

class CONXScriptProgramFunc;

class ScriptWatcher {
public:
  // A statement begins; `place` is where reading its first token begins.
  virtual void StatementBegins(std::uint32_t place) = 0;
  // A function of the program was entered, or is about to be left with success.
  virtual void FunctionEntered(const CONXScriptProgramFunc& function) = 0;
  virtual void FunctionLeft(const CONXScriptProgramFunc& function) = 0;

protected:
  ~ScriptWatcher() = default;
};
