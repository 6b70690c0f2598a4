#include "runner/CheckCommand.h"

#include "host/commandline/ExitCodes.h"
#include "host/commandline/StandardStreams.h"
#include "host/support/Files.h"
#include "runner/EncodingHint.h"
#include "scriptrt/run/ScriptCheck.h"

#include <limits>

namespace {

bool ReadScript(const std::string& file, std::string& text) {
  if (file == "-")
    return host::ReadStandardInput(text);
  constexpr auto kNoLimit = std::numeric_limits<std::uint64_t>::max();
  return host::ReadWholeFile(file, kNoLimit, text) == host::ReadOutcome::kComplete;
}

// `found` is a ScriptProblem or an EncodingHint.
template <class Found>
std::string Line(const std::string& file, const char* kind, const Found& found) {
  return (file == "-" ? "<stdin>" : file) + ":" + std::to_string(found.line) + ":" + std::to_string(found.column) +
         ": " + kind + ": " + found.text + "\n";
}

} // namespace

int CheckFiles(std::string_view program, const std::vector<std::string>& files, const std::vector<std::string>& names) {
  host::StandardOutput output;
  bool unreadable = false;
  bool problems = false;
  for (const std::string& file : files) {
    std::string text;
    if (!ReadScript(file, text)) {
      host::PrintMessage(program, file + ": the file cannot be read");
      unreadable = true;
      continue;
    }
    if (const auto hint = FindEncodingHint(text))
      output.Write(Line(file, "note", *hint));
    for (const ScriptProblem& problem : CheckScript(text, names)) {
      output.Write(Line(file, "error", problem));
      problems = true;
    }
  }
  if (output.Failed())
    host::PrintMessage(program, "standard output cannot be written");
  if (unreadable || output.Failed())
    return host::kExitStream;
  return problems ? host::kExitProblemsFound : 0;
}
