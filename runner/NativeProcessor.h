// Runs scripts on the engine that is linked into the program.
#pragma once

#include "host/commandline/RunCommand.h"
#include "runner/ShowingOperator.h"
#include "runner/TerminalOperator.h"
#include "scriptrt/run/ScriptRunner.h"

class NativeProcessor : public host::ScriptProcessor {
public:
  NativeProcessor() : m_runner(this) { m_runner.SetOperator(&m_showing); }

  void Connect(COndDeviceComm_0* channel) override;
  EONX_ERR_ERRCODE_ Execute(const std::string& text, OndScriptOutput output, void* context) override;
  EONX_ERR_ERRCODE_ ExecuteFile(const std::string& path, OndScriptOutput output, void* context) override;
  EONX_ERR_ERRCODE_ SetVariables(std::vector<TONXSCRIPTVARIABLE>& records) override;
  std::uint64_t GetVariables(std::vector<TONXSCRIPTVARIABLE>& records) override;
  void ShowBeforeAsking(std::function<void()> show) override { m_showing.ShowBeforeAsking(std::move(show)); }
  void Stop() override;
  void StopFor(const host::InterruptCause& cause) override;

private:
  TerminalOperator m_operator;
  ShowingOperator m_showing{m_operator};
  CScriptRunner m_runner;
};
