// What a script's author reads when something is wrong: the error, and the place where reading the last token began.
// tests/scripts/errors has the first of each kind and the lines of a place, here are their variations.

#include "script/value/ScriptError.h"
#include "tests/script/ScriptHarness.h"

#include <doctest/doctest.h>

#include <vector>

using namespace std::string_literals;

namespace {

struct Case {
  std::string script; // one line
  std::string error;
  unsigned offset;
};

void CheckAll(const std::string& phase, const std::vector<Case>& cases) {
  for (const Case& each : cases) {
    CAPTURE(each.script);
    ScriptHarness harness;
    const bool behindLineEnd = each.script.ends_with('\n') && each.offset == each.script.size();
    const std::string place = behindLineEnd ? "line 2/column 1" : "line 1/column " + std::to_string(each.offset + 1);
    CHECK(harness.Run(each.script) ==
          each.error + " near " + place + " (offset " + std::to_string(each.offset) + ") during " + phase + "\n");
    CHECK(harness.Result() == EONX_ERR_SCRIPT);
  }
}

} // namespace

TEST_CASE("an empty program is no error") {
  for (const std::string& script : {""s, " \t\r\n"s, "# only a comment"s, "\0 = 1;"s, "var int32 a;"s}) {
    ScriptHarness harness;
    CHECK(harness.Run(script) == "");
    CHECK(harness.Result() == EONX_ERR_NONE);
  }
}

TEST_CASE("errors while reading") {
  const std::vector<Case> cases = {
      // tokens
      {"  .", "Unexpected token", 0},
      {"print(0x1F:);", "Syntax error", 6},
      {"print(0x1Fg);", "Unexpected token", 10},
      {"print(1a);", "Unexpected token", 7},
      {"print(\"open", "Error in string", 6},
      {"print(\"open\\n", "Error in string", 6},
      {"print() \"", "Error in string", 7},
      // declarations and functions
      {"var int32 1;", "Unexpected token", 9},
      {"func f(int32 a) { }", "Syntax error", 7},
      {"func f(var int32 a; var int32 b) { }", "Syntax error", 18},
      {"func f() { ", "Unexpected token", 10},
      // a block that the text leaves open behind a statement: the brace is missing where the text ends
      {"while (1) { print(\"a\"); \n", "Unexpected token", 25},
      {"while (1) { print(\"a\"); # open", "Unexpected token", 30},
      {"while (1) { print(\"a\"); # open\0 }"s, "Unexpected token", 30},
      {"if (1) { var int32 a;   ", "Unexpected token", 24},
      {"if (1) { } else { print(); ", "Unexpected token", 27},
      {"func f() { while (1) { print(); }  ", "Unexpected token", 35},
      // statements
      {"print()", "Syntax error", 7},
      {"var int32 a; a;", "Unexpected token", 14},
      {"var int32 a; a == 1;", "Unexpected token", 14},
      {"while 1 { }", "Unexpected token", 5},
      {"int32(1);", "Unknown identifier", 0},
      {"\"if\" (1) { }", "Unexpected token", 0},
      // expressions
      {"print(1 + );", "Unexpected token", 9},
      {"print(1 1);", "Unexpected token", 7},
      {"print(int32 5);", "Unexpected token", 11},
      {"print(&nothing);", "Unknown identifier", 7},
      // what a function cannot see
      {"func f() { v = 1; } var int32 v;", "Unknown identifier", 10},
      {"func f(var int32 p) { func g() { p = 1; } }", "Unknown identifier", 32},
      {"if (1) { var int32 v; } v = 1;", "Unknown identifier", 23},
  };
  CheckAll("parsing", cases);
}

TEST_CASE("errors while running") {
  const std::vector<Case> cases = {
      {"var int32 a; a %= 0;", "Division by 0 error", 19},
      {"var string s; s = 1;", "Type error", 19},
      {"var string s; s -= \"a\";", "Syntax error", 22},
      {"print(-\"ab\");", "Type error", 11},
      {"print(string(5));", "Type error", 14},
      {"while (\"yes\") { }", "Type error", 12},
      // a result that was never set
      {"func f() { } print(1 + f());", "Type error", 26},
      {"func f() { } print(\"\" + f());", "Type error", 27},
      {"func f() { } if (f()) { }", "Type error", 20},
      {"func f() { } var int32 a; a += f();", "Type error", 34},
      {"func f() { } print(strlen(f()));", "Type error", 29},
      // calls
      {"func f(var int32 a) { } f();", "Wrong number of parameters", 26},
      {"exit(1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1);", "Wrong number of parameters", 68},
      {"executesubscriptfunc(\"x\");", "Wrong number of parameters", 24},
      {"func f() { } f(1 / 0);", "Division by 0 error", 20},
      {"func f(var int32 a) { } f(\"x\");", "Type error", 29},
      {"func f(var int32 a) { } f(&f);", "Type error", 27},
      {"func f(func g) { } f(1 / 0);", "Type error", 21},
      {"func f(func g) { } var int32 v; f(&v);", "Type error", 35},
      {"print(strlen(&print));", "Type error", 19},
      // a name that a later declaration of the same body hides
      {"func f() { print(\"a\"); var int32 print; } f();", "Unexpected token", 16},
      {"func f() { var int32 a; a = (strlen(\"x\") + 1); var int32 strlen; } f();", "Unexpected token", 35},
      {"var int32 a; a = a + 1; func a() { }", "Unexpected token", 14},
      {"var int32 b; var int32 a; b = a + 1; func a() { }", "Unexpected token", 31},
      {"func f() { if (strlen(\"x\")) { } var string strlen; } f();", "Type error", 21},
  };
  CheckAll("executing", cases);
}

TEST_CASE("texts of all codes") {
  CHECK(ErrorText(kProcessingAborted) == "Processing aborted"s);
  CHECK(ErrorText(static_cast<ScriptError>(14)) == "Unknown error"s);
  CHECK(ErrorText(static_cast<ScriptError>(0x10000005)) == "User Error"s);
  CHECK(ErrorText(static_cast<ScriptError>(0x20000001)) == "Unknown error class"s);
}
