#include "host/console/ModuleProcessor.h"

#include <new>

namespace host {
namespace {

// Pointers travel through `Call` as 64-bit numbers.
std::uint64_t Argument(const void* pointer) {
  return reinterpret_cast<std::uintptr_t>(pointer);
}
std::uint64_t Argument(OndScriptOutput output) {
  return reinterpret_cast<std::uintptr_t>(output);
}

// An output function that also looks for what the output ends with.
struct WatchedOutput {
  FailureTail& failure;
  OndScriptOutput function;
  void* context;

  static void Write(void* output, const char* text) {
    const auto& self = *static_cast<WatchedOutput*>(output);
    try {
      self.failure.Add(text);
    } catch (const std::bad_alloc&) { // then less is explained
    }
    self.function(self.context, text);
  }
};

} // namespace

void ModuleProcessor::Connect(COndDeviceComm_0* channel) {
  m_processor->Connect(channel);
}

EONX_ERR_ERRCODE_ ModuleProcessor::Execute(const std::string& text, OndScriptOutput output, void* context) {
  m_failure.Begin(text, "");
  WatchedOutput watched{m_failure, output, context};
  return m_processor->Call(ONX_CALL_EXECUTE_SCRIPT, Argument(text.c_str()), Argument(WatchedOutput::Write),
                           Argument(&watched), 0);
}

EONX_ERR_ERRCODE_ ModuleProcessor::ExecuteFile(const std::string& path, OndScriptOutput output, void* context) {
  m_failure.Begin("", path);
  WatchedOutput watched{m_failure, output, context};
  return m_processor->Call(ONX_CALL_EXECUTE_SCRIPT_FILE, Argument(path.c_str()), Argument(WatchedOutput::Write),
                           Argument(&watched), 0);
}

EONX_ERR_ERRCODE_ ModuleProcessor::SetVariables(std::vector<TONXSCRIPTVARIABLE>& records) {
  std::vector<std::string> names;
  for (const TONXSCRIPTVARIABLE& record : records)
    names.emplace_back(record.name);
  m_failure.SetNames(std::move(names));
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
