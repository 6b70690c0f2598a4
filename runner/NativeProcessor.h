// Runs a script on the engine that is linked into the program: one, so that a stop request made before is not
// forgotten.
#pragma once

#include "host/commandline/RunCommand.h"
#include "runner/TerminalPrompter.h"
#include "scriptrt/run/ScriptSession.h"

class NativeProcessor : public host::ScriptProcessor {
public:
  NativeProcessor() : m_session(this) { m_session.SetPrompter(&m_prompter); }

  void Connect(COndDeviceComm_0* channel) override;
  EONX_ERR_ERRCODE_ Execute(const std::string& text, OndScriptOutput output, void* context) override;
  EONX_ERR_ERRCODE_ ExecuteFile(const std::string& path, OndScriptOutput output, void* context) override;
  EONX_ERR_ERRCODE_ SetVariables(std::vector<TONXSCRIPTVARIABLE>& records) override;
  std::uint64_t GetVariables(std::vector<TONXSCRIPTVARIABLE>& records) override;
  void ShowBeforeWaiting(std::function<void()> show) override { m_session.ShowBeforeWaiting(std::move(show)); }
  void Stop() override;
  void StopFor(const host::InterruptCause& cause) override;

private:
  TerminalPrompter m_prompter;
  ScriptSession m_session;
};
