// Transfers and their output, on a channel that does as it is told.

#include "scriptrt/builtin/DeviceStringFunctions.h"
#include "tests/script/ScriptHarness.h"
#include "tests/support/TemporaryFolder.h"

#include <doctest/doctest.h>

namespace {

std::string Bar(std::size_t done) {
  return std::string(done, '#') + std::string(40 - done, '.');
}

} // namespace

TEST_CASE("transmitfile: the line with the file's name fills in place") {
  const TemporaryFolder folder;
  ScriptHarness harness;
  harness.Channel().duringTransfer = [](TransferProgressCallback report, void* context) {
    for (const std::uint32_t step : {0U, 20U, 40U, 40U, 4000000000U})
      CHECK(report(context, step) == 0);
    return 0;
  };
  CHECK(harness.Run(R"(var int32 r; r = transmitfile("sub\\x.bin", 257, 258, 2); print(r);)", folder.Path().c_str()) ==
        "\rx.bin " + Bar(0) + "\rx.bin " + Bar(20) + "\rx.bin " + Bar(40) + "\rx.bin " + Bar(40) + "\rx.bin " +
            Bar(40) + " -> OK\n0");
  CHECK(Joined(harness.Channel().Calls("TransmitFile")) ==
        "TransmitFile " + folder.PathOf("sub\\x.bin") + " 1 2 2 1 40");

  // A zero byte would name another, shorter file: the channel gets no name at all.
  harness.Channel().ForgetCalls();
  harness.Run("transmitfile(\"a\\0b\", 1, 2, 0);", folder.Path().c_str());
  CHECK(Joined(harness.Channel().Calls("TransmitFile")) == "TransmitFile  1 2 0 1 40");
}

TEST_CASE("a job file that cannot be loaded is shown with one kind of slash") {
  ScriptHarness harness;
  CHECK(harness.Run("executejobfile(\"sub/no.dcj\", 0, 1);", "C:\\jobs") ==
        "Could not load job file (C:\\jobs\\sub\\no.dcj)\n");
}

TEST_CASE("device functions without an output function") {
  const TemporaryFolder folder;
  folder.Write("list.dcj", "a.bin\t1\t2\tnormal\n");
  ScriptHarness harness;
  harness.Channel().Fail("TransmitFileFromMemory", {5});
  harness.Channel().duringTransfer = [](TransferProgressCallback report, void* context) { return report(context, 40); };
  const char* script =
      "transmitfile(\"a\", 1, 1, 0); transmitfilefromstring(\"a\", 1, 1, 0, 1); executejobfile(\"list.dcj\");"
      "executesubscript(\"no.dcs\");";
  CHECK(harness.Session().ExecuteScript(script, folder.Path().c_str(), nullptr, nullptr) == EONX_ERR_SCRIPT);
  CHECK(harness.Channel().Calls("TransmitFile").size() == 3);
}

TEST_CASE("receivestring collects until the device is silent or fails") {
  struct Row {
    std::deque<std::string> pieces;
    std::deque<std::int32_t> codes;
    std::string text;
  };
  const Row rows[] = {
      {{}, {}, ""},
      {{"ab", "cd", "ef"}, {0, 0, 3}, "abcd"},
      {{std::string(1024, 'x'), std::string("y\0z", 3)}, {}, std::string(1024, 'x') + "y\\0z"},
      {{"ab", "", "cd"}, {}, "ab"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.text);
    ScriptHarness harness;
    harness.Channel().Fail("Receive", row.codes);
    harness.Channel().duringReceive = [pieces = row.pieces](char* buffer, std::uint32_t size) mutable -> std::uint64_t {
      if (pieces.empty())
        return 0;
      CHECK(pieces.front().size() <= size);
      const std::size_t taken = pieces.front().copy(buffer, size);
      pieces.pop_front();
      return taken;
    };
    CHECK(harness.Run("print(receivestring());") == row.text);
  }
}

TEST_CASE("receivestring gives an answer that is under way a pause once") {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::milliseconds kPause{20};
  auto quickest = Clock::duration::max(); // on a busy machine any wait may take long
  for (int attempt = 0; attempt < 10 && quickest >= kPause; ++attempt) {
    std::vector<Clock::time_point> asked;
    ScriptHarness harness;
    harness.Channel().duringReceive = [&](char* buffer, std::uint32_t) {
      asked.push_back(Clock::now());
      buffer[0] = 'x';
      return asked.size() <= 3 ? 1 : 0;
    };
    CHECK(harness.Run("print(receivestring());") == "xxx");
    REQUIRE(asked.size() == 4);
    CHECK(asked[1] - asked[0] >= kPause);
    quickest = std::min(quickest, asked[3] - asked[1]);
  }
  CHECK(quickest < kPause);
}

TEST_CASE("receiving from a device that never falls silent ends where a text would become too long") {
  constexpr std::size_t kLimit = 10 * 1024;
  GuardedChannel channel;
  channel.duringReceive = [](char* buffer, std::uint32_t size) { return std::fill_n(buffer, size, 'x') - buffer; };
  channel.Lock(&channel, 0);
  const platform::StopEvent stopEvent;
  std::string collected;
  CHECK(ReceiveUntilSilent(channel, stopEvent, kLimit, &collected) == kOutOfMemory);
  CHECK(collected.size() == kLimit); // what fits is fine
  collected.clear();
  CHECK(ReceiveUntilSilent(channel, stopEvent, kLimit - 1, &collected) == kOutOfMemory);
  CHECK(collected.size() == kLimit - 1024);
  channel.Unlock(&channel);
}
