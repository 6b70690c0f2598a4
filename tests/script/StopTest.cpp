// A stop request ends whatever a script waits for.

#include "platform/Platform.h"
#include "tests/script/ScriptHarness.h"
#include "tests/support/TemporaryFolder.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <thread>

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

// Transfers report their steps until they are asked to abort; something always waits to be received.
class EndlessChannel : public GuardedChannel {
public:
  std::int32_t Receive(char* buffer, std::uint32_t size, std::uint64_t* received) override {
    GuardedChannel::Receive(buffer, size, received);
    buffer[0] = 'x';
    *received = 1;
    return 0;
  }
  std::int32_t TransmitFile(const char* path, std::uint8_t id, std::uint8_t type, std::uint32_t mode,
                            TransferProgressCallback callback, void* context, std::uint32_t flag,
                            std::uint32_t steps) override {
    GuardedChannel::TransmitFile(path, id, type, mode, callback, context, flag, steps);
    return Transfer(callback, context);
  }
  std::int32_t TransmitFileFromMemory(const char*, std::uint64_t, std::uint8_t, std::uint8_t, std::uint32_t,
                                      TransferProgressCallback callback, void* context, std::uint32_t,
                                      std::uint32_t) override {
    return Transfer(callback, context);
  }

private:
  static constexpr std::int32_t kAborted = 77;

  static std::int32_t Transfer(TransferProgressCallback callback, void* context) {
    for (std::uint32_t step = 0; callback(context, step) == 0; step = step < 39 ? step + 1 : 39)
      platform::Sleep(1);
    return kAborted;
  }
};

struct StoppedRun {
  std::atomic<bool> ended{false};
  Clock::duration tookToEnd{}; // from the stop request
  EONX_ERR_ERRCODE_ result = EONX_ERR_NONE;
  std::string output;
  std::vector<std::string> calls;
};

// Stops the script a moment after its first output.
void StopAfterOutput(const std::string& script, const TemporaryFolder& folder, StoppedRun& run) {
  EndlessChannel channel;
  CScriptRunner runner(&channel);
  runner.SetChannel(&channel);
  struct Context {
    std::promise<void> begun;
    std::string output;
  } context;
  const auto collect = [](void* to, const char* text) {
    auto& target = *static_cast<Context*>(to);
    if (target.output.empty())
      target.begun.set_value();
    target.output += text;
  };
  runner.PrepareRun();
  std::thread worker([&] {
    run.result = runner.ExecuteScript(script, folder.Path().c_str(), collect, &context);
    run.ended = true;
  });
  const bool begun = context.begun.get_future().wait_for(30s) == std::future_status::ready;
  std::this_thread::sleep_for(10ms); // so that it waits by now; when it does not yet, the stop must work just the same
  CHECK_MESSAGE(!run.ended, "it ended without being stopped");
  const auto stopped = Clock::now();
  runner.StopScript();
  worker.join();
  run.tookToEnd = Clock::now() - stopped;
  run.output = context.output;
  run.calls = channel.Calls();
  CHECK_MESSAGE(begun, "no output within 30 s");
  CHECK(channel.LockDepth() == 0);
}

} // namespace

TEST_CASE("a stop request ends delays, transfers, reading and sub-scripts within 50 ms") {
  const TemporaryFolder folder;
  folder.Write("sub.dcs", "print(\"go\"); delay(-1); func f() { print(\"go\"); while (1) { delay(100000); } }");
  folder.Write("list.dcj", "a\t1\t1\tnormal\nb\t1\t1\tnormal\n");
  struct Row {
    std::string script;
    std::string ending;
  };
  const Row rows[] = {
      {"print(\"go\"); delay(4294967295);", "Processing aborted"},
      {"print(\"go\"); print(receivestring());", "Processing aborted"},
      {"executesubscript(\"sub.dcs\");", "Processing aborted"},
      {"executesubscriptfunc(\"sub.dcs\", \"f\");", "Processing aborted"},
      {"transmitfile(\"a\", 1, 1, 0);", "System function failed"},
      {"transmitfile(\"a\", 1, 1, 0, 1); delay(-1);", "Processing aborted"},
      {"transmitfilefromstring(\"a\", 1, 1, 0);", "System function failed"},
      {"executejobfile(\"list.dcj\");", "System function failed"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.script);
    // The machine may be busy with something else; polling or a lost wake-up would show in every try.
    auto quickest = Clock::duration::max();
    for (int attempt = 0; attempt < 5 && quickest >= 50ms; ++attempt) {
      StoppedRun run;
      StopAfterOutput(row.script, folder, run);
      CHECK(run.result == EONX_ERR_SCRIPT);
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
  StoppedRun run;
  StopAfterOutput("print(executejobfile(\"list.dcj\", 1, 1));", folder, run);
  CHECK(run.result == EONX_ERR_NONE); // it asked for failures to be ignored
  CHECK(run.output.ends_with(" during ExecuteJobFile (list.dcj)\n77"));
  CHECK(std::count_if(run.calls.begin(), run.calls.end(),
                      [](const std::string& call) { return call.starts_with("TransmitFile"); }) == 1);
}

TEST_CASE("a sub-script does not forget a stop request that came before it") {
  const TemporaryFolder folder;
  folder.Write("sub.dcs", "while (1) { }");
  ScriptHarness harness;
  harness.Runner().PrepareRun();
  harness.Runner().StopScript();
  CHECK(harness.Runner().ExecuteScript("executesubscript(\"sub.dcs\");", folder.Path().c_str(), nullptr, nullptr) ==
        EONX_ERR_SCRIPT);
}
