#include "scriptrt/check/DiagnosticReading.h"

#include "script/RunScript.h"
#include "scriptrt/check/CheckScript.h"
#include "scriptrt/check/CheckedProgram.h"
#include "scriptrt/check/FailureExplainer.h"

#include <charconv>

std::optional<ReadDiagnostic> ParseDiagnostic(std::string_view line) {
  constexpr std::string_view kOffset = " (offset ";
  const bool isParsing = line.ends_with(") during parsing\n");
  if (!isParsing && !line.ends_with(") during executing\n"))
    return std::nullopt;
  const std::size_t near = line.find(" near line ");
  const std::size_t offset = line.find(kOffset);
  if (near == std::string_view::npos || offset == std::string_view::npos)
    return std::nullopt;
  ReadDiagnostic diagnostic{};
  diagnostic.phase = isParsing ? RunPhase::kParsing : RunPhase::kExecuting;
  const char* const digits = line.data() + offset + kOffset.size();
  if (std::from_chars(digits, line.data() + line.size(), diagnostic.place).ec != std::errc())
    return std::nullopt;
  for (std::uint32_t code = kOutOfMemory; code <= kProcessingAborted; ++code) {
    diagnostic.error = static_cast<ScriptError>(code);
    if (line.substr(0, near) == ErrorText(diagnostic.error))
      return diagnostic;
  }
  return std::nullopt;
}

std::vector<ScriptProblem> ExplainDiagnostic(const ReadDiagnostic& diagnostic, std::string_view text,
                                             const std::vector<std::string>& externalNames) {
  if (diagnostic.phase == RunPhase::kParsing)
    return CheckScript(text, externalNames);
  CheckedProgram checked(text, externalNames);
  if (checked.program.Parse() != kScriptOk)
    return {};
  RunContext context;
  const RunSetup setup{context, text, {}, {}, {}, {}};
  return {ExplainFailure({setup, diagnostic.error, diagnostic.place, checked.program, nullptr}).problem};
}
