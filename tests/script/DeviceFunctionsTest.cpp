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

TEST_CASE("device functions without an output function") {
  const TemporaryFolder folder;
  folder.Write("list.dcj", "a.bin\t1\t2\tnormal\n");
  ScriptHarness harness;
  harness.Channel().Fail("TransmitFileFromMemory", {5});
  harness.Channel().duringTransfer = [](TransferProgressCallback report, void* context) { return report(context, 40); };
  const char* script =
      "transmitfile(\"a\", 1, 1, 0); transmitfilefromstring(\"a\", 1, 1, 0, 1); executejobfile(\"list.dcj\");"
      "executesubscript(\"no.dcs\");";
  CHECK(harness.Runner().ExecuteScript(script, folder.Path().c_str(), nullptr, nullptr) == EONX_ERR_SCRIPT);
  CHECK(harness.Channel().Calls("TransmitFile").size() == 3);
}

TEST_CASE("receivestring collects until the device is silent or fails") {
  class TalkingChannel : public GuardedChannel {
  public:
    std::deque<std::string> pieces;
    std::int32_t Receive(char* buffer, std::uint32_t size, std::uint64_t* received) override {
      const std::int32_t code = GuardedChannel::Receive(buffer, size, received);
      if (code != 0 || pieces.empty())
        return code;
      CHECK(pieces.front().size() <= size);
      *received = pieces.front().copy(buffer, size);
      pieces.pop_front();
      return 0;
    }
  };
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
    TalkingChannel channel;
    channel.pieces = row.pieces;
    channel.Fail("Receive", row.codes);
    ScriptHarness harness;
    harness.Runner().SetChannel(&channel);
    CHECK(harness.Run("print(receivestring());") == row.text);
  }
}

TEST_CASE("receivestring gives an answer that is under way a pause once") {
  using Clock = std::chrono::steady_clock;
  class SlowChannel : public GuardedChannel {
  public:
    std::vector<Clock::time_point> asked;
    std::int32_t Receive(char* buffer, std::uint32_t, std::uint64_t* received) override {
      asked.push_back(Clock::now());
      *received = asked.size() <= 3 ? 1 : 0;
      buffer[0] = 'x';
      return 0;
    }
  };
  constexpr std::chrono::milliseconds kPause{20};
  auto quickest = Clock::duration::max(); // on a busy machine any wait may take long
  for (int attempt = 0; attempt < 10 && quickest >= kPause; ++attempt) {
    SlowChannel channel;
    ScriptHarness harness;
    harness.Runner().SetChannel(&channel);
    CHECK(harness.Run("print(receivestring());") == "xxx");
    REQUIRE(channel.asked.size() == 4);
    CHECK(channel.asked[1] - channel.asked[0] >= kPause);
    quickest = std::min(quickest, channel.asked[3] - channel.asked[1]);
  }
  CHECK(quickest < kPause);
}

TEST_CASE("receiving from a device that never falls silent ends where a text would become too long") {
  class EndlessChannel : public GuardedChannel {
  public:
    std::int32_t Receive(char* buffer, std::uint32_t size, std::uint64_t* received) override {
      std::fill_n(buffer, size, 'x');
      *received = size;
      return 0;
    }
  };
  constexpr std::size_t kLimit = 10 * 1024;
  EndlessChannel channel;
  const platform::StopEvent stopEvent;
  std::string collected;
  CHECK(ReceiveUntilSilent(channel, stopEvent, kLimit, &collected) == kOutOfMemory);
  CHECK(collected.size() == kLimit); // what fits is fine
  collected.clear();
  CHECK(ReceiveUntilSilent(channel, stopEvent, kLimit - 1, &collected) == kOutOfMemory);
  CHECK(collected.size() == kLimit - 1024);
}
