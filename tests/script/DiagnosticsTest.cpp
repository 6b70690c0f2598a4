// What a script's author reads when something is wrong: the error, and the place where reading the last token began.
// tests/scripts/errors has the first of each kind and the lines of a place, Diagnostics.cases their variations.

#include "script/value/ScriptError.h"
#include "scriptrt/check/CheckScript.h"
#include "scriptrt/check/CheckedProgram.h"
#include "tests/script/ScriptHarness.h"
#include "tests/support/Cases.h"

#include <doctest/doctest.h>

using namespace std::string_literals;

TEST_CASE("an empty program is no error") {
  for (const std::string& script : {""s, " \t\r\n"s, "# only a comment"s, "\0 = 1;"s, "var int32 a;"s}) {
    ScriptHarness harness;
    CHECK(harness.Run(script) == "");
    CHECK(harness.Result() == EONX_ERR_NONE);
  }
}

TEST_CASE("errors and their places") {
  for (const std::string phase : {"parsing", "executing"}) {
    CheckCases("script/Diagnostics.cases", "errors during " + phase, [&](const Words& given) -> Words {
      ScriptHarness harness;
      const std::string& script = given[0];
      const std::string output = harness.Run(script);
      CHECK(harness.Result() == EONX_ERR_SCRIPT);
      const std::string error = output.substr(0, output.find(" near "));
      const std::string offset = output.substr(std::min(output.find("(offset ") + 8, output.size()));
      const auto place = static_cast<std::size_t>(std::atoi(offset.c_str()));
      const bool isBehindLineEnd = script.ends_with('\n') && place == script.size();
      const std::string line = isBehindLineEnd ? "line 2/column 1" : "line 1/column " + std::to_string(place + 1);
      CHECK(output == error + " near " + line + " (offset " + std::to_string(place) + ") during " + phase + "\n");
      return {error, std::to_string(place)};
    });
  }
}

TEST_CASE("a malformed token is reported where it stands, wherever that is") {
  const std::string program =
      "var int32 a ; func f ( var int32 p , func g ) { if ( p > 1 ) { a += g ( - p , & a ) ; } else { f = uint64 ( p ) "
      "; } "
      "while ( a ) { var string s ; a = 0 ; } if ( a ) { } func none ( ) { } } f ( ( 1 ) , & f ) ; ";
  for (std::size_t at = program.find(' '); at != std::string::npos; at = program.find(' ', at + 1)) {
    CAPTURE(at);
    ScriptHarness harness;
    CHECK(harness.Run(std::string(program).insert(at, " \"\\q\"")) == "Error in string near line 1/column " +
                                                                          std::to_string(at + 1) + " (offset " +
                                                                          std::to_string(at) + ") during parsing\n");
  }
}

TEST_CASE("a check begins with what a run would report, and gets to the end") {
  const std::string program =
      "var int32 a ; func f ( var int32 p , func g ) { if ( p > 1 ) { a += g ( - p , & a ) ; } else { f = uint64 ( p ) "
      "; } \n while ( a ) { var string s ; s = \"x\" ; } } f ( ( 1 ) , & f ) ; \n";
  const auto compare = [](const std::string& text) {
    CAPTURE(text);
    CheckedProgram plain(text, {});
    const ScriptError error = plain.program.Parse();
    const std::vector<ScriptProblem> problems = CheckScript(text, {});
    REQUIRE(problems.empty() == (error == kScriptOk));
    if (error == kScriptOk)
      return;
    CHECK(problems.front().message.starts_with(ErrorText(error)));
    const Token token = plain.program.scanner.Scan(plain.program.Place());
    if (token.kind != TokenKind::kEnd)
      CHECK(problems.front().range.begin == token.begin);
    for (const ScriptProblem& problem : problems)
      CHECK(problem.range.end <= text.size());
  };
  std::size_t begin = 0;
  for (std::size_t end = program.find(' '); end != std::string::npos; end = program.find(' ', begin)) {
    compare(std::string(program).erase(begin, end - begin));
    for (const std::string word : {";",      "{",     "}",    "(",     ")",   ",",       "=",    "&",           "x",
                                   "return", "if",    "else", "while", "var", "func",    "for",  "\"open",      "'",
                                   "// no",  "/* no", "0x",   "1",     "\n",  "else if", "do {", "switch (a) {"})
      compare(std::string(program).insert(begin, word + " "));
    begin = end + 1;
  }
}

TEST_CASE("texts of all codes") {
  CHECK(ErrorText(kProcessingAborted) == "Processing aborted"s);
  CHECK(ErrorText(static_cast<ScriptError>(14)) == "Unknown error"s);
  CHECK(ErrorText(static_cast<ScriptError>(0x10000005)) == "User Error"s);
  CHECK(ErrorText(static_cast<ScriptError>(0x20000001)) == "Unknown error class"s);
}
