// Runs scripts through the module's Script Processor.
#pragma once

#include "host/commandline/RunCommand.h"
#include "host/console/FailureTail.h"
#include "host/console/Module.h"
#include "host/console/QuestionWindows.h"

namespace host {

class ModuleProcessor : public ScriptProcessor {
public:
  // `processor` must be a Script Processor.
  explicit ModuleProcessor(Module::Object processor) : m_processor(std::move(processor)) {}

  void Connect(COndDeviceComm_0* channel) override;
  EONX_ERR_ERRCODE_ Execute(const std::string& text, OndScriptOutput output, void* context) override;
  EONX_ERR_ERRCODE_ ExecuteFile(const std::string& path, OndScriptOutput output, void* context) override;
  EONX_ERR_ERRCODE_ SetVariables(std::vector<TONXSCRIPTVARIABLE>& records) override;
  std::uint64_t GetVariables(std::vector<TONXSCRIPTVARIABLE>& records) override;
  void UseDesk(AnswerDesk* desk) override;
  std::string TakeFailure() override { return m_failure.Explain(); }
  void Stop() override;
  void DismissQuestion() override { m_questions.Dismiss(); }

private:
  Module::Object m_processor;
  QuestionWindows m_questions;
  FailureTail m_failure;
};

} // namespace host
