// Sets a run up and runs it.
#pragma once

#include "scriptrt/builtin/RunServices.h"

#include <string_view>

class ExternalVariables;

struct RunRequest {
  RunContext& context;   // receives the base directory
  std::string_view text; // followed by a zero byte
  std::string_view baseDirectory;
  ExternalVariables* variables = nullptr; // null: none
  FunctionStart* function = nullptr;      // null: the main program
  CONXScriptVariable* result = nullptr;   // receives the value of the function that is run
  RunFailure* failure = nullptr;          // receives what otherwise ends the output
  std::string_view file = {};             // for messages; empty: none
};

// Runs a script with all built-ins. Want of memory during the set-up ends the run as it does later: with the diagnostic
// line and kOutOfMemory.
ScriptError RunWithBuiltIns(const RunServices& services, const RunRequest& request) noexcept;
