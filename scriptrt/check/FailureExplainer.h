// Why a run has failed, found after it happened from what is left of it.
#pragma once

#include "script/FailureObserver.h"
#include "scriptrt/check/ScriptProblem.h"

struct CallPlace {
  std::string function;   // in which the call stands; empty: the main program
  std::uint32_t position; // of the call in the text
};

struct FailureExplanation {
  ScriptProblem problem;
  // Where it happened (the first, of which only the function counts), and the calls that led there, the latest first.
  // Of many, some are left out in the middle.
  std::vector<CallPlace> calls;
  std::size_t callCount = 0; // with those
};

// Of a run that was executing. Without a machine, what the text alone tells, and no calls.
FailureExplanation ExplainFailure(const FailedRun& run);
