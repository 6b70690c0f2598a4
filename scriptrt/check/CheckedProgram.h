// A script's program for looking at it only: with the names that a run has, and nothing behind them.
#pragma once

#include "script/program/ScriptProgram.h"
#include "scriptrt/builtin/BuiltIns.h"

#include <string>

class CheckedProgram {
public:
  // A zero byte must follow the text, which must outlive this. `externalNames` are variables that a host would set.
  CheckedProgram(std::string_view text, const std::vector<std::string>& externalNames) : program(text, m_context) {
    program.AddPredefined("version", m_anyVariable);
    for (const auto& [name, function] : m_builtIns.ByName())
      program.AddPredefined(name, *function);
    for (const std::string& name : externalNames)
      program.AddPredefined(name, m_anyVariable);
  }

private:
  RunContext m_context;
  CONXScriptVariable m_anyVariable;
  const BuiltIns m_builtIns{{}};

public:
  ScriptProgram program;
};
