// Runs as a whole: locks, stops, limits, hostile scripts.

#include "script/RunScript.h"
#include "tests/script/ScriptHarness.h"
#include "tests/support/RunOnStack.h"
#include "tests/support/TemporaryFolder.h"

#include <doctest/doctest.h>

TEST_CASE("the channel is locked for the run and only for it") {
  ScriptHarness harness;
  harness.Run("transmitstring(\"ver\\r\"); print(receivestring());");
  CHECK(harness.Result() == EONX_ERR_NONE);
  CHECK(harness.Channel().LockDepth() == 0);
  harness.Run("transmitstring(1);");
  CHECK(harness.Result() == EONX_ERR_SCRIPT);
  CHECK(harness.Channel().LockDepth() == 0);

  int other = 0;
  REQUIRE(harness.Channel().Lock(&other, 0) == 0);
  CHECK(harness.Run("print(1);").empty());
  CHECK(harness.Result() == EONX_ERR_LOCKED);
  harness.Channel().Unlock(&other);

  harness.Session().SetChannel(nullptr);
  harness.Run("print(1);");
  CHECK(harness.Result() == EONX_ERR_NO_CHANNEL);
}

TEST_CASE("a script file runs in its folder, or says why it cannot") {
  const TemporaryFolder folder;
  folder.Write("base.dcs", "print(getbasepath());");
  ScriptHarness harness;
  const auto run = [&](const char* path) {
    std::string output;
    const auto collect = [](void* context, const char* text) { *static_cast<std::string*>(context) += text; };
    const EONX_ERR_ERRCODE_ result = harness.Session().ExecuteScriptFile(path, collect, &output);
    return std::to_string(result) + " " + output;
  };
  CHECK(run(folder.PathOf("base.dcs").c_str()) == "0 " + folder.Path());
  CHECK(run(nullptr) == "6 ");
  CHECK(run("") == "6 ");
  CHECK(run(folder.PathOf("none.dcs").c_str()) == "8 ");
  CHECK(run(folder.Path().c_str()) == "8 ");
  int other = 0;
  REQUIRE(harness.Channel().Lock(&other, 0) == 0);
  CHECK(run(folder.PathOf("none.dcs").c_str()) == "20 "); // the lock comes first
  harness.Channel().Unlock(&other);
  CHECK(harness.Channel().LockDepth() == 0);
  harness.Session().SetChannel(nullptr);
  CHECK(run(folder.PathOf("none.dcs").c_str()) == "7 ");
}

TEST_CASE("a run from within a run is refused and changes nothing") {
  ScriptHarness harness;
  harness.onOutput = [&session = harness.Session()] {
    CHECK(session.ExecuteScript("print(2);", nullptr, nullptr, nullptr) == EONX_ERR_LOCKED);
    CHECK(session.SetVariables(nullptr, 0, ExistingVariables::kForget) == EONX_ERR_LOCKED);
    session.StopScript();
    session.PrepareRun(); // must not forget the stop request of the run that goes on
  };
  harness.Run("print(1); while (1) { }");
  CHECK(harness.Result() == EONX_ERR_SCRIPT);
}

TEST_CASE("nesting and recursion without end are out of memory, on small stacks too") {
  const std::string open(1000000, '(');
  std::string blocks;
  for (int i = 0; i < 100000; ++i)
    blocks += "if (1) { ";
  const std::vector<std::string> scripts = {
      "print(" + open + "1);",
      blocks,
      "func f() { f(); } f();",
      "func f(var int32 n) { f = 1 + f(n + 1); } print(f(0));",
      "func f(func g) { if (1) { while (1) { g(&g); } } } f(&f);",
  };
  for (const std::size_t stack : {std::size_t{64} * 1024, std::size_t{1024} * 1024}) {
    CAPTURE(stack);
    for (const std::string& script : scripts) {
      CAPTURE(script.substr(0, 40));
      ScriptHarness harness;
      std::string output;
      RunOnStack(stack, [&] { output = harness.Run(script); });
      CHECK(output.find("out of memory error near line 1/") == 0);
      CHECK(harness.Result() == EONX_ERR_SCRIPT);
    }
  }
}

TEST_CASE("a stop that an output asks for is reported at the loop's head, by the way that led there") {
  const char* const rows[][2] = {
      // a loop's body, and the token in front of which reading was at last
      {"print(1);", "; }"},
      {"print(1); if (i) { }", ") { }"},
      {"print(1); if (i) { } else { i = 2; }", "; } }"},
      {"print(1); while (0) { }", " while (0)"}, // the inner loop's test comes first
  };
  for (const auto& [body, token] : rows) {
    const std::string script = std::string("var int32 i; while (1) { ") + body + " }";
    CAPTURE(script);
    ScriptHarness harness;
    harness.onOutput = [&] { harness.Session().StopScript(); };
    const std::string output = harness.Run(script);
    CHECK(harness.Result() == EONX_ERR_SCRIPT);
    CHECK(output.find("(offset " + std::to_string(script.rfind(token)) + ") during executing") != std::string::npos);
  }
}

TEST_CASE("calls nest as deep as memory goes, not as the thread's stack") {
  ScriptHarness harness;
  std::string output;
  RunOnStack(std::size_t{64} * 1024, [&] {
    output = harness.Run("func f(var int32 n) { if (n > 0) { f = 1 + f(n - 1); } else { f = 0; } }"
                         "func g(var string s, var int32 n) { if (n > 0) { g = g(s, n - 1) + \"x\"; } else { g = s; } }"
                         "print(f(100000), \" \", strlen(g(\"abc\", 20000)));");
  });
  CHECK(output == "100000 20003");
}

TEST_CASE("large and binary scripts") {
  ScriptHarness harness;
  // A chain of operators is no nesting.
  CHECK(harness.Run("print(" + std::string(1000000, '-') + "1);") == "1");
  std::string many;
  for (int i = 0; i < 100000; ++i)
    many += "func f" + std::to_string(i) + "() { f" + std::to_string(i / 2) + "(); } ";
  CHECK(harness.Run(many + "print(\"done\");") == "done");

  std::string all;
  for (int i = 255; i > 0; --i)
    all += static_cast<char>(i);
  CHECK(harness.Run(all) == "Unexpected token near line 1/column 1 (offset 0) during parsing\n");
}

TEST_CASE("a watcher sees statements and calls in their order") {
  struct Notes final : ScriptWatcher {
    void StatementBegins(std::uint32_t place) override { text += " " + std::to_string(place); }
    void FunctionEntered(const CONXScriptProgramFunc& function) override {
      text += " (" + std::to_string(function.number);
    }
    void FunctionLeft(const CONXScriptProgramFunc& function) override {
      text += " " + std::to_string(function.number) + ")";
    }
    std::string text;
  } notes;
  RunContext context;
  //                           0         1         2         3         4
  //                           01234567890123456789012345678901234567890
  const char* const script = "func f(var int32 n) { if (n) { f(n - 1); } } f(1);";
  CHECK(RunScript({context, script, {}, {}, {}, {}, nullptr, nullptr, &notes}) == kScriptOk);
  CHECK(notes.text == " 44 (1 21 30 (1 21 1) 1)");
}
