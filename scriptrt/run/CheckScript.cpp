#include "scriptrt/run/CheckScript.h"

#include "script/program/ScriptProgram.h"
#include "scriptrt/builtin/BuiltIns.h"

namespace {

constexpr std::string_view kSpace = " \t\r\n";

// An error is reported where reading its token began, in front of white space and comments, or where the text ends; a
// person wants to see the token, or the end of what stands in front of it when the text has no more.
std::uint64_t TokenItself(std::string_view text, std::uint64_t start) {
  if (start >= text.size())
    return text.find_last_not_of(kSpace) + 1;
  std::size_t at = text.find_first_not_of(kSpace, start);
  while (at < text.size() && text[at] == '#')
    at = text.find_first_not_of(kSpace, text.find('\n', at));
  return at < text.size() ? at : start;
}

} // namespace

std::vector<ScriptProblem> CheckScript(std::string_view text, const std::vector<std::string>& externalNames) {
  RunContext context;
  ScriptProgram program(text, context);
  CONXScriptVariable anyVariable;
  program.AddPredefined("version", anyVariable);
  const BuiltIns builtIns({});
  for (const auto& [name, function] : builtIns.ByName())
    program.AddPredefined(name, *function);
  for (const std::string& name : externalNames)
    program.AddPredefined(name, anyVariable);

  const ScriptError error = program.Parse();
  if (!error)
    return {};
  ScriptProblem problem{error, ErrorText(error), 0, 0};
  LineAndColumn(text, TokenItself(text, program.Place()), &problem.line, &problem.column);
  ++problem.line;
  ++problem.column;
  return {problem};
}
