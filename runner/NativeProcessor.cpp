#include "runner/NativeProcessor.h"

void NativeProcessor::Connect(COndDeviceComm_0* channel) {
  m_session.SetChannel(channel);
}

void NativeProcessor::Prepare() {
  m_prompter.Return();
  m_session.PrepareRun();
}

EONX_ERR_ERRCODE_ NativeProcessor::Execute(const std::string& text, OndScriptOutput output, void* context) {
  return m_session.ExecuteScript(text, nullptr, output, context);
}

EONX_ERR_ERRCODE_ NativeProcessor::ExecuteFile(const std::string& path, OndScriptOutput output, void* context) {
  return m_session.ExecuteScriptFile(path.c_str(), output, context);
}

EONX_ERR_ERRCODE_ NativeProcessor::SetVariables(std::vector<TONXSCRIPTVARIABLE>& records) {
  return m_session.SetVariables(records.data(), records.size(), ExistingVariables::kForget);
}

std::uint64_t NativeProcessor::GetVariables(std::vector<TONXSCRIPTVARIABLE>& records) {
  std::uint64_t found = 0;
  m_session.GetVariables(records.data(), records.size(), &found);
  return found;
}

void NativeProcessor::Stop() {
  m_session.StopScript();
}

void NativeProcessor::StopFor(const host::InterruptCause& cause) {
  Stop();
  if (cause.isKey)
    m_prompter.TellStopping();
  else
    m_prompter.Leave();
}
