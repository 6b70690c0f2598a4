// Runs scripts on the engine that is linked into the program.
#pragma once

#include "host/commandline/RunCommand.h"
#include "runner/ShowingPrompter.h"
#include "runner/TerminalPrompter.h"
#include "scriptrt/run/ScriptSession.h"

class NativeProcessor : public host::ScriptProcessor {
public:
  NativeProcessor() : m_session(this) { m_session.SetPrompter(&m_showing); }

  void Connect(COndDeviceComm_0* channel) override;
  EONX_ERR_ERRCODE_ Execute(const std::string& text, OndScriptOutput output, void* context) override;
  EONX_ERR_ERRCODE_ ExecuteFile(const std::string& path, OndScriptOutput output, void* context) override;
  EONX_ERR_ERRCODE_ SetVariables(std::vector<TONXSCRIPTVARIABLE>& records) override;
  std::uint64_t GetVariables(std::vector<TONXSCRIPTVARIABLE>& records) override;
  void ShowBeforeAsking(std::function<void()> show) override { m_showing.ShowBeforeAsking(std::move(show)); }
  void Stop() override;
  void StopFor(const host::InterruptCause& cause) override;

private:
  TerminalPrompter m_prompter;
  ShowingPrompter m_showing{m_prompter};
  ScriptSession m_session;
};
