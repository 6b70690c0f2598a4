// What code the compiler makes: a change of it shows here as a difference that one can read.

#include "script/code/Listing.h"
#include "scriptrt/builtin/BuiltIns.h"

#include <doctest/doctest.h>

#include <string>

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
  struct Row {
    const char* script;
    const char* code;
  };
  const Row rows[] = {
      // a loop's round is one jump that tests the condition again
      {"var int32 i; while (i < 10) { i += 1; }", R"(@MAIN
  0 @0 ResetNumbers a=2 b=1 n=3
  1 @12 CheckStop
  2 @0 JumpIfNotLessSignedConstant a=6 b=2 k=10
  3 @0 AddInt32Constant a=2 b=2 k=1
  4 @36 LoopIfLessSignedConstant a=3 b=2 k=10
  5 @0 Jump a=6
  6 @0 End
)"},
      // no condition, no test
      {"while (1) { }", R"(@MAIN
  0 @0 CheckStop
  1 @9 Loop a=1
  2 @0 End
)"},
      // mixed widths are computed in one and cut to the target's
      {"var int64 a; var dword b; b = a * b; a = b / 3;", R"(@MAIN
  0 @0 ResetNumbers a=2 b=1 n=5
  1 @0 ResetNumbers a=3 b=1 n=1
  2 @0 MultiplyUint32 a=3 b=2 c=3
  3 @46 DivideSignedConstant a=2 b=3 k=3
  4 @0 NarrowInt32 a=2 b=2
  5 @0 End
)"},
      // a byte of a text, compared without a copy
      {"var string s; if (substr(s, 0, 1) == \"a\") { s += \"b\"; }", R"(@MAIN
  0 @0 ResetTexts a=2 b=1 n=2
  1 @0 Number a=4
  2 @0 Number a=5 k=1
  3 @32 CallPure a=3 b=2 c=4 n=5
  4 @0 JumpIfText a=7 b=3 n=1280 "a"
  5 @52 AppendConstant a=2 "b"
  6 @0 End
  7 @0 End
)"},
      // a call's value tells its type when it runs; each way out of the function knows where reading would be
      {"func f(var int32 n) { if (n > 1) { f = n; } } var int32 a; a = f(2);", R"(@MAIN
  0 @0 ResetNumbers a=2 b=1 n=3
  1 @0 Number a=5 k=2
  2 @66 Call a=3 n=1 f
  3 @67 AssignDynamic a=2 b=3 n=3
  4 @0 End
f
  0 @0 JumpIfNotGreaterSignedConstant a=3 b=2 k=1
  1 @40 AssignResultNumber b=2 n=3
  2 @40 Return
  3 @31 Return
)"},
      // a variable is copied where a call behind it may change it
      {"func f() { } var int32 a; print(a + f());", R"(@MAIN
  0 @0 ResetNumbers a=2 b=1 n=3
  1 @0 Move a=5 b=2
  2 @38 Call a=6 n=1 f
  3 @0 Tag a=5 n=3
  4 @39 BinaryGeneral a=5 b=5 c=6 n=779
  5 @39 CallBuiltIn a=3 b=1
  6 @0 End
f
  0 @- Return
)"},
      // what cannot work fails where reading it would
      {"func f() { print(\"a\"); var int32 print; }", R"(@MAIN
  0 @0 End
f
  0 @0 ResetNumbers a=2 b=1 n=3
  1 @16 Fail k=4
  2 @16 Return
)"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.script);
    CHECK(CodeOf(row.script) == row.code);
  }
}
