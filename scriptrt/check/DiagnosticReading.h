// What more can be said about the line that a failed run ends its output with, from the script's text alone: for
// programs that reach the engine through the module.
#pragma once

#include "script/value/ScriptError.h"
#include "scriptrt/check/ScriptProblem.h"

struct ReadDiagnostic {
  ScriptError error;
  RunPhase phase;
  std::uint32_t place; // offset in the text
};

// Nothing when it is another line.
std::optional<ReadDiagnostic> ParseDiagnostic(std::string_view line);

// The first problem is the one of the line. `externalNames` are variables that the host set. A zero byte must follow
// the text.
std::vector<ScriptProblem> ExplainDiagnostic(const ReadDiagnostic& diagnostic, std::string_view text,
                                             const std::vector<std::string>& externalNames);
