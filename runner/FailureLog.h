// Why a script failed, as text for whoever ran it.
#pragma once

#include "host/commandline/Diagnostic.h"
#include "script/FailureObserver.h"

class FailureLog final : public FailureObserver {
public:
  explicit FailureLog(host::Colours colours) : m_colours(colours) {}

  void RunFailed(const FailedRun& run) override;

  // What was told since the last time: lines, each with its end; empty when there was nothing, or a script was stopped.
  std::string Take();

private:
  void AddReading(const FailedRun& run, const std::string& file);
  void AddRunning(const FailedRun& run, const std::string& file);

  const host::Colours m_colours;
  std::string m_text;
};
