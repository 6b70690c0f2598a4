#include "scriptrt/check/CheckScript.h"

#include "scriptrt/check/CheckedProgram.h"
#include "scriptrt/check/ProblemCollector.h"

std::vector<ScriptProblem> CheckScript(std::string_view text, const std::vector<std::string>& externalNames) {
  CheckedProgram checked(text, externalNames);
  ProblemCollector collector(checked.program);
  const ScriptError error = checked.program.Parse(&collector);
  std::vector<ScriptProblem> problems = collector.Finish();
  if (error == kOutOfMemory) {
    const std::uint32_t place = checked.program.scanner.Scan(checked.program.Place()).begin;
    problems.push_back({.message = std::string(ErrorText(error)) + ": blocks or parentheses are nested too deep",
                        .hint = {},
                        .range = {place, place},
                        .mark = {place, place},
                        .related = {}});
  }
  return problems;
}
