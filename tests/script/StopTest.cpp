// A stop request ends whatever a script waits for.

#include "platform/Platform.h"
#include "tests/script/ScriptHarness.h"
#include "tests/support/TemporaryFolder.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <mutex>

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

// A run on a channel whose transfers report their steps until they are asked to abort, and which always has something
// to receive. It is stopped a moment after its first output.
struct StoppedRun {
  ScriptHarness harness;
  std::string output;
  Clock::duration tookToEnd{}; // from the stop request

  StoppedRun(const std::string& script, const TemporaryFolder& folder) {
    harness.Channel().duringTransfer = [](TransferProgressCallback report, void* context) {
      for (std::uint32_t step = 0; report(context, step) == 0; step = std::min(step + 1, 39U))
        platform::Sleep(1);
      return 77;
    };
    harness.Channel().duringReceive = [](char* buffer, std::uint32_t) {
      buffer[0] = 'x';
      return 1;
    };
    std::promise<void> begun;
    std::once_flag first;
    harness.onOutput = [&] { std::call_once(first, [&] { begun.set_value(); }); };
    auto run = std::async(std::launch::async, [&] { return harness.Run(script, folder.Path().c_str()); });
    CHECK_MESSAGE(begun.get_future().wait_for(30s) == std::future_status::ready, "no output within 30 s");
    // So that it waits by now; when it does not yet, the stop must work just the same.
    CHECK_MESSAGE(run.wait_for(10ms) == std::future_status::timeout, "it ended without being stopped");
    const auto stopped = Clock::now();
    harness.Session().StopScript();
    output = run.get();
    tookToEnd = Clock::now() - stopped;
    CHECK(harness.Channel().LockDepth() == 0);
  }
};

} // namespace

TEST_CASE("a stop request ends delays, transfers, reading and sub-scripts within 50 ms") {
  const TemporaryFolder folder;
  folder.Write("sub.dcs", "print(\"go\"); delay(-1); func f() { print(\"go\"); while (1) { delay(100000); } }");
  folder.Write("list.dcj", "a\t1\t1\tnormal\nb\t1\t1\tnormal\n");
  const struct {
    std::string script, ending;
  } rows[] = {
      {"print(\"go\"); while (1) { }", "Processing aborted"},
      {"print(\"go\"); delay(4294967295);", "Processing aborted"},
      {"print(\"go\"); print(receivestring());", "Processing aborted"},
      {"executesubscript(\"sub.dcs\");", "Processing aborted"},
      {"executesubscriptfunc(\"sub.dcs\", \"f\");", "Processing aborted"},
      {"transmitfile(\"a\", 1, 1, 0);", "System function failed"},
      {"transmitfile(\"a\", 1, 1, 0, 1); delay(-1);", "Processing aborted"},
      {"transmitfilefromstring(\"a\", 1, 1, 0);", "System function failed"},
      {"executejobfile(\"list.dcj\");", "System function failed"},
  };
  for (const auto& row : rows) {
    CAPTURE(row.script);
    // The machine may be busy with something else; polling or a lost wake-up would show in every try.
    auto quickest = Clock::duration::max();
    for (int attempt = 0; attempt < 5 && quickest >= 50ms; ++attempt) {
      StoppedRun run(row.script, folder);
      CHECK(run.harness.Result() == EONX_ERR_SCRIPT);
      CHECK_MESSAGE(run.output.find(row.ending + " near line 1/") != std::string::npos, run.output);
      quickest = std::min(quickest, run.tookToEnd);
    }
    CHECK(quickest < 50ms);
  }
}

TEST_CASE("a stop request ends a job list that goes on after errors") {
  const TemporaryFolder folder;
  std::string list;
  for (int i = 0; i < 100; ++i)
    list += "a\t1\t1\tnormal\n";
  folder.Write("list.dcj", list);
  StoppedRun run("print(executejobfile(\"list.dcj\", 1, 1));", folder);
  CHECK(run.harness.Result() == EONX_ERR_NONE); // it asked for failures to be ignored
  CHECK(run.output.ends_with(" during ExecuteJobFile (list.dcj)\n77"));
  CHECK(run.harness.Channel().Calls("TransmitFile").size() == 1);
}

TEST_CASE("a job list that a stop request cuts short ends the script though nothing failed") {
  const TemporaryFolder folder;
  folder.Write("list.dcj", "a\t1\t1\tnormal\nb\t1\t1\tnormal\nc\t1\t1\tnormal\n");
  for (std::size_t stopDuring = 1; stopDuring <= 3; ++stopDuring) { // which transfer
    CAPTURE(stopDuring);
    ScriptHarness harness;
    std::size_t transfer = 0;
    harness.Channel().duringTransfer = [&](TransferProgressCallback, void*) {
      if (++transfer == stopDuring)
        harness.Session().StopScript();
      return 0;
    };
    const std::string output = harness.Run("executejobfile(\"list.dcj\", 1, 1);", folder.Path().c_str());
    const bool isCutShort = stopDuring < 3;
    CHECK(harness.Channel().Calls("TransmitFile").size() == stopDuring);
    CHECK(harness.Result() == (isCutShort ? EONX_ERR_SCRIPT : EONX_ERR_NONE));
    CHECK((output.find("Processing aborted near line 1/") != std::string::npos) == isCutShort);
  }
}

TEST_CASE("a stop request that comes before the run begins is not forgotten, one of an earlier run is") {
  const TemporaryFolder folder;
  folder.Write("sub.dcs", "while (1) { }");
  ScriptHarness harness;
  for (const char* script : {"while (1) { }", "executesubscript(\"sub.dcs\");"}) {
    harness.Session().PrepareRun();
    harness.Session().StopScript();
    harness.RunPrepared(script, folder.Path().c_str());
    CHECK(harness.Result() == EONX_ERR_SCRIPT);
  }
  CHECK(harness.Run("var int32 i; while (i < 3) { i += 1; } print(i);") == "3");
}

TEST_CASE("an abandoned run ends at the next statement block, the one after it runs again") {
  ScriptHarness harness;
  harness.Session().PrepareRun();
  harness.Session().AbandonScript();
  CHECK(harness.Session().ExecuteScript("print(1);", nullptr, nullptr, nullptr) == EONX_ERR_SCRIPT);
  CHECK(harness.Run("if (1) { print(1); }") == "1");
  harness.Session().PrepareRun();
  harness.Session().StopScript(); // a mere stop leaves what has no loop alone
  CHECK(harness.Session().ExecuteScript("if (1) { print(1); }", nullptr, nullptr, nullptr) == EONX_ERR_NONE);
}

TEST_CASE("an output that abandons its run keeps the job list's transfer from beginning") {
  const TemporaryFolder folder;
  folder.Write("list.dcj", "a\t1\t1\tnormal\n");
  ScriptHarness harness;
  harness.onOutput = [&] { harness.Session().AbandonScript(); };
  harness.Run("executejobfile(\"list.dcj\");", folder.Path().c_str());
  CHECK(harness.Result() == EONX_ERR_SCRIPT);
  CHECK(harness.Channel().Calls("TransmitFile").empty());
}
