#include "runner/CheckCommand.h"

#include "host/commandline/Diagnostic.h"
#include "host/commandline/ExitCodes.h"
#include "host/commandline/ExpectedVariables.h"
#include "host/commandline/StandardStreams.h"
#include "host/support/Files.h"
#include "runner/EncodingHint.h"
#include "scriptrt/check/CheckScript.h"

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

// What is wrong with the script, and with what it says about its variables.
std::vector<host::Diagnostic> Problems(const std::string& shown, const std::string& text,
                                       std::vector<std::string> names) {
  const host::ExpectedVariables expected = host::ReadExpectedVariables(text);
  for (const host::Variable& variable : expected.variables)
    names.push_back(variable.name);
  std::vector<host::Diagnostic> problems;
  for (const ScriptProblem& problem : CheckScript(text, names))
    problems.push_back(host::DiagnosticOf(shown, problem));
  for (const auto& malformed : expected.malformed)
    problems.push_back(
        {shown, "error", malformed.reason, "", malformed.begin, {malformed.begin, malformed.end}, std::nullopt});
  return problems;
}

std::string Line(const std::string& file, const EncodingHint& hint) {
  return file + ":" + std::to_string(hint.line) + ":" + std::to_string(hint.column) + ": note: " + hint.text + "\n";
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
    const std::string shown = file == "-" ? "<stdin>" : file;
    if (const auto hint = FindEncodingHint(*text))
      output.Write(Line(shown, *hint));
    for (const host::Diagnostic& found : Problems(shown, *text, names)) {
      output.Write(host::DiagnosticText(found, *text, host::ColoursOfOutput()));
      problems = true;
    }
  }
  const int code = host::ExitCodeOf(program, output);
  if (unreadable || code != 0)
    return host::kExitStream;
  return problems ? host::kExitProblemsFound : 0;
}
