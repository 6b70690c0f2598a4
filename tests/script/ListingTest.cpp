// What code the compiler makes: a change of it shows here as a difference that one can read.

#include "script/code/Listing.h"
#include "scriptrt/builtin/BuiltIns.h"
#include "tests/support/Cases.h"

#include <doctest/doctest.h>

#include <sstream>

namespace {

std::string CodeOf(const std::string& text) {
  RunContext context;
  ScriptProgram program(text, context);
  const BuiltIns builtIns({});
  for (const auto& [name, function] : builtIns.ByName())
    program.AddPredefined(name, *function);
  REQUIRE(program.Parse() == kScriptOk);
  return ListCode(program);
}

} // namespace

TEST_CASE("listings") {
  const std::string expected = ReadTestFile("script/listings.txt");
  std::string made;
  std::istringstream lines(expected);
  for (std::string line; std::getline(lines, line);) {
    const bool isScript = line.starts_with("> ");
    if (isScript || line.starts_with('#') || line.empty())
      made += line + "\n" + (isScript ? CodeOf(line.substr(2)) : "");
  }
  CHECK(made == expected);
}
