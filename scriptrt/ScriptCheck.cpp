#include "scriptrt/ScriptCheck.h"

#include "script/ScriptProgram.h"
#include "scriptrt/BuiltIns.h"

namespace {

// An error is reported where reading its token began, in front of white space; a person wants to see the token.
std::uint64_t TokenItself(std::string_view text, std::uint64_t start) {
  const std::size_t begin = text.find_first_not_of(" \t\r\n", start);
  return begin == std::string_view::npos ? start : begin;
}

} // namespace

std::vector<ScriptProblem> CheckScript(std::string_view text, const std::vector<std::string>& externalNames) {
  CONXRunContext context;
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
  LineAndColumn(text, TokenItself(text, program.Cursor().TokenStart()), &problem.line, &problem.column);
  ++problem.line;
  ++problem.column;
  return {problem};
}
