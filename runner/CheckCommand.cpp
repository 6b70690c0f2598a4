#include "runner/CheckCommand.h"

#include "host/commandline/ExitCodes.h"
#include "host/commandline/StandardStreams.h"
#include "host/support/Files.h"
#include "runner/EncodingHint.h"
#include "scriptrt/run/CheckScript.h"

namespace {

// A script's text, or what keeps it from being checked.
tl::expected<std::string, std::string> ReadScript(const std::string& file) {
  const bool isInput = file == "-";
  if (!isInput && !host::IsRegularFile(file))
    return tl::unexpected<std::string>(
        "the file cannot be read: there is none, or it is no regular one (- reads standard input)");
  return (isInput ? host::ReadStandardInput() : host::ReadWholeFile(file, host::kLongestScript))
      .map_error([](host::ReadFailure failure) -> std::string {
        return failure == host::ReadFailure::kTooLarge ? "the file is too long for a script: 4 GiB or more"
                                                       : "the file cannot be read";
      });
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
    const auto text = ReadScript(file);
    if (!text) {
      host::PrintMessage(program, file + ": " + text.error());
      unreadable = true;
      continue;
    }
    if (const auto hint = FindEncodingHint(*text))
      output.Write(Line(file, "note", *hint));
    for (const ScriptProblem& problem : CheckScript(*text, names)) {
      output.Write(Line(file, "error", problem));
      problems = true;
    }
  }
  const int code = host::ExitCodeOf(program, output);
  if (unreadable || code != 0)
    return host::kExitStream;
  return problems ? host::kExitProblemsFound : 0;
}
