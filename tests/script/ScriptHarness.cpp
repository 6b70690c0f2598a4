#include "tests/script/ScriptHarness.h"

std::string ScriptHarness::Run(std::string_view text, const char* baseDirectory) {
  const std::string terminated(text);
  m_output.clear();
  m_runner.PrepareRun();
  m_result = m_runner.ExecuteScript(terminated, baseDirectory, Collect, this);
  return m_output;
}

void ScriptHarness::Collect(void* context, const char* text) {
  static_cast<ScriptHarness*>(context)->m_output += text;
}
