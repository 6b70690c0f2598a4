// Runs script texts as a host would and keeps what comes of it.
#pragma once

#include "scriptrt/run/ScriptSession.h"
#include "tests/support/GuardedChannel.h"

#include <string>
#include <string_view>

class ScriptHarness {
public:
  ScriptHarness() { m_session.SetChannel(&m_channel); }

  // Called at every output of a run, which has been kept. [the run's thread]
  std::function<void()> onOutput = [] {};

  // The output of a run from the start, its diagnostic line included. Null: the process's current folder.
  std::string Run(std::string_view text, const char* baseDirectory = nullptr) {
    m_session.PrepareRun();
    return RunPrepared(text, baseDirectory);
  }
  // The same, but a request to stop that came before counts.
  std::string RunPrepared(std::string_view text, const char* baseDirectory = nullptr) {
    const std::string terminated(text);
    m_output.clear();
    m_result = m_session.ExecuteScript(terminated, baseDirectory, Collect, this);
    return m_output;
  }
  // The result of the last run.
  EONX_ERR_ERRCODE_ Result() const { return m_result; }
  ScriptSession& Session() { return m_session; }
  GuardedChannel& Channel() { return m_channel; }

private:
  static void Collect(void* context, const char* text) {
    auto& self = *static_cast<ScriptHarness*>(context);
    self.m_output += text;
    self.onOutput();
  }

  GuardedChannel m_channel;
  ScriptSession m_session{this};
  std::string m_output;
  EONX_ERR_ERRCODE_ m_result = EONX_ERR_NONE;
};
