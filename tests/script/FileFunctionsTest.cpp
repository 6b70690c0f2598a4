// File and sub-script built-ins: what the scripts of tests/scripts cannot show.

#include "platform/Platform.h"
#include "tests/script/ScriptHarness.h"
#include "tests/support/RunOnStack.h"
#include "tests/support/TemporaryFolder.h"

#include <doctest/doctest.h>

namespace {

std::size_t CountOf(const std::string& text, const std::string& searched) {
  std::size_t count = 0;
  for (std::size_t at = text.find(searched); at != std::string::npos; at = text.find(searched, at + 1))
    ++count;
  return count;
}

} // namespace

TEST_CASE("the base directory is the script's folder, or the process's") {
  const TemporaryFolder folder;
  ScriptHarness harness;
  CHECK(harness.Run("print(getbasepath());", folder.Path().c_str()) == folder.Path());
  CHECK(harness.Run("print(getbasepath());") == platform::CurrentFolder());
  CHECK(harness.Run("print(getbasepath());", "") == platform::CurrentFolder());
}

TEST_CASE("a sub-script that calls itself runs out of stack, not out of the process") {
  const TemporaryFolder folder;
  folder.Write("self.dcs", "executesubscript(\"self.dcs\");");
  folder.Write("func.dcs", "func f() { executesubscriptfunc(\"func.dcs\", \"f\"); }");
  for (const char* call : {"executesubscript(\"self.dcs\");", "executesubscriptfunc(\"func.dcs\", \"f\");"}) {
    CAPTURE(call);
    ScriptHarness harness;
    std::string output;
    RunOnStack(1024 * 1024, [&] { output = harness.Run(call, folder.Path().c_str()); });
    CHECK(harness.Result() == EONX_ERR_SCRIPT);
    const std::size_t depth = CountOf(output, "in subscript \"");
    CHECK(depth > 10);
    CHECK(CountOf(output, "out of memory error near line 1/") >= depth);
  }
}

TEST_CASE("sub-scripts work on the channel of the run and lock nothing themselves") {
  const TemporaryFolder folder;
  folder.Write("sub.dcs", "transmitstring(\"hello\"); func f() { transmitstring(\"f\"); }");
  ScriptHarness harness;
  harness.Run("executesubscript(\"sub.dcs\"); executesubscriptfunc(\"sub.dcs\", \"f\");", folder.Path().c_str());
  CHECK(Joined(harness.Channel().Calls()) == "Lock 500, Transmit hello, Transmit f, Unlock");
}

TEST_CASE("a script of 4 GiB is refused before it is read") {
  const TemporaryFolder folder;
  folder.Write("huge.dcs", "print(1);");
  std::filesystem::resize_file(folder.SystemPath() / "huge.dcs", std::uintmax_t{4} << 30); // takes no room on the disk
  ScriptHarness harness;
  CHECK(harness.Session().ExecuteScriptFile(folder.PathOf("huge.dcs").c_str(), nullptr, nullptr) ==
        EONX_ERR_OUT_OF_MEMORY);
  CHECK(harness.Run("executesubscript(\"huge.dcs\");", folder.Path().c_str()) ==
        "out of memory error near line 1/column 28 (offset 27) during executing\n");
}
