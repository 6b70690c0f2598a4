#include "host/console/ModuleProcessor.h"

namespace host {
namespace {

// Pointers travel through `Call` as 64-bit numbers.
std::uint64_t Argument(const void* pointer) {
  return reinterpret_cast<std::uintptr_t>(pointer);
}
std::uint64_t Argument(OndScriptOutput output) {
  return reinterpret_cast<std::uintptr_t>(output);
}

} // namespace

void ModuleProcessor::Connect(COndDeviceComm_0* channel) {
  m_processor->Connect(channel);
}

EONX_ERR_ERRCODE_ ModuleProcessor::Execute(const std::string& text, OndScriptOutput output, void* context) {
  return m_processor->Call(ONX_CALL_EXECUTE_SCRIPT, Argument(text.c_str()), Argument(output), Argument(context), 0);
}

EONX_ERR_ERRCODE_ ModuleProcessor::ExecuteFile(const std::string& path, OndScriptOutput output, void* context) {
  return m_processor->Call(ONX_CALL_EXECUTE_SCRIPT_FILE, Argument(path.c_str()), Argument(output), Argument(context),
                           0);
}

EONX_ERR_ERRCODE_ ModuleProcessor::SetVariables(std::vector<TONXSCRIPTVARIABLE>& records) {
  return m_processor->Call(ONX_CALL_SET_VARIABLES, Argument(records.data()), records.size(), 0, 0);
}

std::uint64_t ModuleProcessor::GetVariables(std::vector<TONXSCRIPTVARIABLE>& records) {
  std::uint64_t found = 0;
  m_processor->Call(ONX_CALL_GET_VARIABLES, Argument(records.data()), records.size(), Argument(&found), 0);
  return found;
}

void ModuleProcessor::UseDesk(AnswerDesk* desk) {
  m_questions.UseDesk(desk);
}

void ModuleProcessor::Stop() {
  m_processor->Call(ONX_CALL_STOP_SCRIPT, 0, 0, 0, 0);
}

} // namespace host
