// Runs scripts on the engine that is linked into the program.
#pragma once

#include "host/commandline/RunCommand.h"
#include "runner/AnsweringPrompter.h"
#include "runner/FailureLog.h"
#include "runner/TerminalPrompter.h"
#include "scriptrt/run/ScriptSession.h"

class NativeProcessor : public host::ScriptProcessor {
public:
  NativeProcessor() : m_session(this) {
    m_session.SetPrompter(&m_answering);
    m_session.SetFailureObserver(&m_failures);
  }

  void Connect(COndDeviceComm_0* channel) override;
  void Prepare() override;
  EONX_ERR_ERRCODE_ Execute(const std::string& text, OndScriptOutput output, void* context) override;
  EONX_ERR_ERRCODE_ ExecuteFile(const std::string& path, OndScriptOutput output, void* context) override;
  EONX_ERR_ERRCODE_ SetVariables(std::vector<TONXSCRIPTVARIABLE>& records) override;
  std::uint64_t GetVariables(std::vector<TONXSCRIPTVARIABLE>& records) override;
  void ShowBeforeWaiting(std::function<void()> show) override { m_session.ShowBeforeWaiting(std::move(show)); }
  void UseDesk(host::AnswerDesk* desk) override { m_answering.UseDesk(desk); }
  std::string TakeFailure() override { return m_failures.Take(); }
  void Stop() override;
  void StopFor(const host::InterruptCause& cause) override;
  void DismissQuestion() override { m_prompter.Leave(); }

  // What runs the scripts, for what a host cannot ask for.
  ScriptSession& Session() { return m_session; }

private:
  TerminalPrompter m_prompter;
  AnsweringPrompter m_answering{m_prompter, [this] { return m_prompter.IsDeserted(); }};
  FailureLog m_failures{host::ColoursOfMessages()};
  ScriptSession m_session;
};
