// The one way a script text is run.
#pragma once

#include "script/FailureObserver.h"
#include "script/machine/ScriptWatcher.h"
#include "script/program/CONXScriptFunc.h"
#include "script/program/RunContext.h"
#include "script/value/ScriptError.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Where a script's output goes; without a function, nowhere.
struct ScriptOutput {
  void (*function)(void* context, const char* text) = nullptr;
  void* context = nullptr;
  void (*show)(void* context) = nullptr; // null where nothing is held back

  void Write(const char* text) const {
    if (function)
      function(context, text);
  }
  // What was written is to be seen: before the script waits for somebody or something.
  void Show() const {
    if (show)
      show(context);
  }
  explicit operator bool() const { return function != nullptr; }
};

// How a run failed.
struct RunFailure {
  ScriptError error = kScriptOk;
  std::uint32_t offset = 0; // of the token that was read last
  RunPhase phase = RunPhase::kParsing;
};

// A function of the running program to start instead of its main program.
struct FunctionStart {
  std::string name;
  ScriptArguments arguments;
};

struct RunSetup {
  RunContext& context;       // receives the base directory
  std::string_view text;     // followed by a zero byte
  std::string baseDirectory; // empty: the process's current folder
  ScriptOutput output;
  // Every built-in by name, later ones hiding earlier ones.
  std::vector<std::pair<std::string_view, CONXScriptFunc*>> builtIns;
  // The host's variables, which hide built-ins of their name and keep what the script leaves in them.
  std::vector<std::pair<std::string_view, CONXScriptVariable*>> externalVariables;
  FunctionStart* function = nullptr;    // null: the main program
  CONXScriptVariable* result = nullptr; // untyped; receives the value of the function that is run
  ScriptWatcher* watcher = nullptr;     // looks on
  RunFailure* failure = nullptr;        // receives what otherwise ends the output: the diagnostic of a failed run
  std::string_view file = {};           // the text's, for messages; empty: none
  FailureObserver* failures = nullptr;  // is told
};

// Reads and runs a script on the calling thread. A failed run ends its output with the diagnostic line, also one that
// found no memory to begin with. The stop event is watched, not reset. Never throws; want of memory or stack is
// kOutOfMemory.
ScriptError RunScript(const RunSetup& setup) noexcept;

// The version of the language, which scripts see as `version`.
inline constexpr const char* kLanguageVersion = "0.4";
