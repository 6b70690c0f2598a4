// What a script's author reads when something is wrong: the error, and the place where reading the last token began.
// tests/scripts/errors has the first of each kind and the lines of a place, here are their variations.

#include "script/ScriptError.h"
#include "tests/script/ScriptHarness.h"

#include <doctest/doctest.h>

#include <vector>

using namespace std::string_literals;

namespace {

struct Case {
  std::string script;
  std::string output;
};

void CheckAll(const std::vector<Case>& cases) {
  for (const Case& each : cases) {
    CAPTURE(each.script);
    ScriptHarness harness;
    CHECK(harness.Run(each.script) == each.output);
    CHECK(harness.Result() == (each.output.empty() ? EONX_ERR_NONE : EONX_ERR_SCRIPT));
  }
}

// "<error> near line 1/column C (offset C-1) during <phase>"
std::string Line1(const std::string& error, unsigned offset, const std::string& phase) {
  return error + " near line 1/column " + std::to_string(offset + 1) + " (offset " + std::to_string(offset) +
         ") during " + phase + "\n";
}
std::string Parsing(const std::string& error, unsigned offset) {
  return Line1(error, offset, "parsing");
}
std::string Executing(const std::string& error, unsigned offset) {
  return Line1(error, offset, "executing");
}

} // namespace

TEST_CASE("an empty program is no error") {
  CheckAll({{"", ""}, {" \t\r\n", ""}, {"# only a comment", ""}, {"\0 = 1;"s, ""}, {"var int32 a;", ""}});
}

TEST_CASE("errors while reading") {
  CheckAll({
      // tokens
      {"  .", Parsing("Unexpected token", 0)},
      {"1;", Parsing("Unexpected token", 0)},
      {"print(0x1F:);", Parsing("Syntax error", 6)},
      {"print(0x1Fg);", Parsing("Unexpected token", 10)},
      {"print(1a);", Parsing("Unexpected token", 7)},
      {"print(\"open", Parsing("Error in string", 6)},
      {"print(\"open\\n", Parsing("Error in string", 6)},
      {"print() \"", Parsing("Error in string", 7)},
      // declarations and functions
      {"var int32 1;", Parsing("Unexpected token", 9)},
      {"func f(int32 a) { }", Parsing("Syntax error", 7)},
      {"func f(var int32 a; var int32 b) { }", Parsing("Syntax error", 18)},
      {"func f() { ", Parsing("Unexpected token", 10)},
      {"func 1() { }", Parsing("Unexpected token", 4)},
      // statements
      {"print()", Parsing("Syntax error", 7)},
      {"var int32 a; a;", Parsing("Unexpected token", 14)},
      {"var int32 a; a == 1;", Parsing("Unexpected token", 14)},
      {"while 1 { }", Parsing("Unexpected token", 5)},
      {"int32(1);", Parsing("Unknown identifier", 0)},
      {"\"if\" (1) { }", Parsing("Unexpected token", 0)},
      // expressions
      {"print(1 + );", Parsing("Unexpected token", 9)},
      {"print(1 1);", Parsing("Unexpected token", 7)},
      {"print(,);", Parsing("Unexpected token", 6)},
      {"print(int32 5);", Parsing("Unexpected token", 11)},
      {"print(&nothing);", Parsing("Unknown identifier", 7)},
      // what a function cannot see
      {"func f() { v = 1; } var int32 v;", Parsing("Unknown identifier", 10)},
      {"func f(var int32 p) { func g() { p = 1; } }", Parsing("Unknown identifier", 32)},
      {"if (1) { var int32 v; } v = 1;", Parsing("Unknown identifier", 23)},
  });
}

TEST_CASE("errors while running") {
  CheckAll({
      {"var int32 a; a %= 0;", Executing("Division by 0 error", 19)},
      {"var string s; s = 1;", Executing("Type error", 19)},
      {"var string s; s -= \"a\";", Executing("Syntax error", 22)},
      {"print(-\"ab\");", Executing("Type error", 11)},
      {"print(0x1FFFFFFFF:L);", Executing("Syntax error", 6)},
      {"print(string(5));", Executing("Type error", 14)},
      {"while (\"yes\") { }", Executing("Type error", 12)},
      // a result that was never set
      {"func f() { } print(1 + f());", Executing("Type error", 26)},
      {"func f() { } print(\"\" + f());", Executing("Type error", 27)},
      {"func f() { } if (f()) { }", Executing("Type error", 20)},
      {"func f() { } var int32 a; a += f();", Executing("Type error", 34)},
      {"func f() { } print(strlen(f()));", Executing("Type error", 29)},
      // calls
      {"func f(var int32 a) { } f();", Executing("Wrong number of parameters", 26)},
      {"func f() { } f(1 / 0);", Executing("Division by 0 error", 20)},
      {"func f(var int32 a) { } f(\"x\");", Executing("Type error", 29)},
      {"func f(var int32 a) { } f(&f);", Executing("Type error", 27)},
      {"func f(func g) { } f(1 / 0);", Executing("Type error", 21)},
      {"func f(func g) { } var int32 v; f(&v);", Executing("Type error", 35)},
      {"print(strlen(&print));", Executing("Type error", 19)},
      // a name that a later declaration of the same body hides
      {"func f() { print(\"a\"); var int32 print; } f();", Executing("Unexpected token", 16)},
  });
}

TEST_CASE("texts of all codes") {
  CHECK(ErrorText(kProcessingAborted) == "Processing aborted"s);
  CHECK(ErrorText(static_cast<ScriptError>(14)) == "Unknown error"s);
  CHECK(ErrorText(static_cast<ScriptError>(0x10000005)) == "User Error"s);
  CHECK(ErrorText(static_cast<ScriptError>(0x20000001)) == "Unknown error class"s);
}
