// The seam for whoever explains why a run has failed.
#pragma once

#include "script/value/ScriptError.h"

class ScriptMachine;
class ScriptProgram;
struct RunSetup;

// A run that has failed, while everything of it is still there.
struct FailedRun {
  const RunSetup& setup;
  ScriptError error;
  std::uint32_t place; // offset in the text, as the diagnostic line tells it
  ScriptProgram& program;
  const ScriptMachine* machine; // null: while the text was read
};

class FailureObserver {
public:
  // Called before the diagnostic line is written; of scripts that run each other, for the innermost first. Memory may
  // be short: what it throws is dropped.
  virtual void RunFailed(const FailedRun& run) = 0;

protected:
  ~FailureObserver() = default;
};
