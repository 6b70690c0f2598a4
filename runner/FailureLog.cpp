#include "runner/FailureLog.h"

#include "host/support/Files.h"
#include "script/RunScript.h"
#include "scriptrt/check/CheckScript.h"
#include "scriptrt/check/FailureExplainer.h"

#include <utility>

namespace {

constexpr std::string_view kIndent = "      ";

std::string InFunction(const CallPlace& call) {
  return call.function.empty() ? "the main program" : "`" + call.function + "`";
}

} // namespace

std::string FailureLog::Take() {
  return std::exchange(m_text, {});
}

void FailureLog::RunFailed(const FailedRun& run) {
  if (run.error == kProcessingAborted)
    return;
  const std::string file = run.setup.file.empty() ? "<stdin>" : host::ShownPath(std::string(run.setup.file));
  if (run.machine)
    AddRunning(run, file);
  else
    AddReading(run, file);
}

void FailureLog::AddReading(const FailedRun& run, const std::string& file) {
  std::vector<std::string> names;
  for (const auto& [name, variable] : run.setup.externalVariables)
    names.emplace_back(name);
  for (const ScriptProblem& problem : CheckScript(run.setup.text, names))
    m_text += host::DiagnosticText(host::DiagnosticOf(file, problem), run.setup.text, m_colours);
}

void FailureLog::AddRunning(const FailedRun& run, const std::string& file) {
  const bool isInnermost = m_text.empty();
  const std::string_view text = run.setup.text;
  const FailureExplanation explanation = ExplainFailure(run);
  if (isInnermost)
    m_text += host::DiagnosticText(host::DiagnosticOf(file, explanation.problem), text, m_colours);
  const std::vector<CallPlace>& calls = explanation.calls;
  if (isInnermost && !calls.empty() && !calls.front().function.empty())
    m_text.append(kIndent).append("in ").append(InFunction(calls.front())).append("\n");
  for (std::size_t i = isInnermost ? 1 : 0; i < calls.size(); ++i) {
    if (i == calls.size() / 2 && calls.size() < explanation.callCount)
      m_text.append(kIndent)
          .append("... ")
          .append(std::to_string(explanation.callCount - calls.size()))
          .append(" calls more\n");
    m_text.append(kIndent)
        .append("called in ")
        .append(InFunction(calls[i]))
        .append(", ")
        .append(host::PlaceText(file, text, calls[i].position))
        .append("\n");
  }
}
