#include "host/report/Verdict.h"

#include <algorithm>

namespace host {

Verdict VerdictOf(int code) {
  return code == 0 ? Verdict::kPassed : code == kExitPartFailed ? Verdict::kFailed : Verdict::kNotTested;
}

std::string_view TextOf(Verdict verdict) {
  switch (verdict) {
  case Verdict::kPassed:
    return "passed";
  case Verdict::kFailed:
    return "failed";
  case Verdict::kNotTested:
    return "not tested";
  case Verdict::kNotRun:
    break;
  }
  return "not run";
}

int CodeOf(std::span<const ScriptRecord> scripts) {
  const auto firstWith = [&](Verdict verdict) {
    return std::find_if(scripts.begin(), scripts.end(),
                        [verdict](const ScriptRecord& script) { return script.verdict == verdict; });
  };
  if (const auto found = firstWith(Verdict::kNotTested); found != scripts.end())
    return found->code;
  return firstWith(Verdict::kFailed) != scripts.end() ? kExitPartFailed : 0;
}

} // namespace host
