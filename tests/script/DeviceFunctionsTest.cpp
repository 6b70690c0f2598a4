// Transfers and their output, on a channel that does as it is told.

#include "tests/script/ScriptHarness.h"
#include "tests/support/TemporaryFolder.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <deque>

namespace {

using Steps = std::vector<std::uint32_t>;

// Answers each transfer with the next of its codes (0 when there is none left) after reporting its steps.
class ObedientChannel : public GuardedChannel {
public:
  explicit ObedientChannel(std::deque<std::int32_t> codes = {}, Steps steps = {}) : m_codes(codes), m_steps(steps) {}

  const char* GetInfoString(std::uint32_t what, std::int64_t code) override {
    CHECK(what == OND_INFO_ERROR);
    m_text = "Error number " + std::to_string(code);
    return m_text.c_str();
  }
  std::int32_t TransmitFile(const char* path, std::uint8_t id, std::uint8_t type, std::uint32_t mode,
                            TransferProgressCallback callback, void* context, std::uint32_t flag,
                            std::uint32_t steps) override {
    GuardedChannel::TransmitFile(path, id, type, mode, callback, context, flag, steps);
    return Transfer(callback, context, flag, steps);
  }
  std::int32_t TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t id, std::uint8_t type,
                                      std::uint32_t mode, TransferProgressCallback callback, void* context,
                                      std::uint32_t flag, std::uint32_t steps) override {
    GuardedChannel::TransmitFileFromMemory(data, length, id, type, mode, callback, context, flag, steps);
    return Transfer(callback, context, flag, steps);
  }

private:
  std::int32_t Transfer(TransferProgressCallback callback, void* context, std::uint32_t flag, std::uint32_t steps) {
    CHECK(flag == 1);
    CHECK(steps == 40);
    for (const std::uint32_t step : m_steps)
      CHECK(callback(context, step) == 0);
    if (m_codes.empty())
      return 0;
    const std::int32_t code = m_codes.front();
    m_codes.pop_front();
    return code;
  }

  std::deque<std::int32_t> m_codes;
  Steps m_steps;
  std::string m_text;
};

std::string Bar(std::size_t done) {
  return std::string(done, '#') + std::string(40 - done, '.');
}

struct Outcome {
  std::string output;
  std::vector<std::string> transfers;
  EONX_ERR_ERRCODE_ result;
};

Outcome RunOn(ObedientChannel& channel, const std::string& script, const TemporaryFolder& folder) {
  ScriptHarness harness;
  harness.Runner().SetChannel(&channel);
  Outcome outcome;
  outcome.output = harness.Run(script, folder.Path().c_str());
  outcome.result = harness.Result();
  outcome.transfers = channel.Calls();
  std::erase_if(outcome.transfers, [](const std::string& call) { return !call.starts_with("TransmitFile"); });
  CHECK(channel.LockDepth() == 0);
  return outcome;
}

} // namespace

TEST_CASE("transmitfile: the line with the file's name fills in place") {
  const TemporaryFolder folder;
  ObedientChannel channel({}, {0, 20, 40, 40, 4000000000});
  const Outcome run = RunOn(channel, "var int32 r; r = transmitfile(\"sub\\\\x.bin\", 257, 258, 2); print(r);", folder);
  CHECK(run.output == "\rx.bin " + Bar(0) + "\rx.bin " + Bar(20) + "\rx.bin " + Bar(40) + "\rx.bin " + Bar(40) +
                          "\rx.bin " + Bar(40) + " -> OK\n0");
  CHECK(run.transfers == std::vector<std::string>{"TransmitFile " + folder.PathOf("sub\\x.bin") + " 1 2 2"});
}

TEST_CASE("a failed transfer is told, and ends the script unless it said otherwise") {
  const TemporaryFolder folder;
  struct Row {
    std::string call;
    std::string told; // behind the bar
  };
  const Row rows[] = {
      {"transmitfile(\"sub\\\\x.bin\", 1, 2, 0", "\nError number -5 during TransmitFile (x.bin)\n"},
      {"transmitfilefromstring(\"x\", 1, 2, 0", "\nError number -5 during TransmitFileFromString\n"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.call);
    for (const char* flag : {"", ", 0"}) {
      ObedientChannel channel({-5});
      const Outcome run = RunOn(channel, "print(" + row.call + flag + ")); print(\"on\");", folder);
      CHECK(run.output.find(row.told + "System function failed near line 1/") != std::string::npos);
      CHECK(run.result == EONX_ERR_SCRIPT);
    }
    ObedientChannel channel({-5});
    const Outcome run = RunOn(channel, "print(" + row.call + ", 7)); print(\" on\");", folder);
    CHECK(run.output.ends_with(row.told + "4294967291 on")); // the channel's code as uint32
    CHECK(run.result == EONX_ERR_NONE);
  }
}

TEST_CASE("executejobfile: every entry of the list has its line") {
  const TemporaryFolder folder;
  folder.Write("list.dcj", "a.bin\t1\t2\tnormal\nsub\\b.bin\t3\t4\tprogram\nQ:\\c.bin\t5\t6\tbit reverse\n");
  const auto line = [](const std::string& name) { return "\r" + name + " " + Bar(0); };
  const auto failed = [](const std::string& code) {
    return "\n-> Error number " + code + " during ExecuteJobFile (sub\\..\\list.dcj)\n";
  };
  struct Row {
    std::string further; // arguments
    std::deque<std::int32_t> codes;
    std::size_t transfers;
    std::string output;
  };
  const std::string ok = " -> OK\n";
  const std::string fatal = "System function failed";
  const Row rows[] = {
      {"", {}, 3, line("a.bin") + ok + line("b.bin") + ok + line("c.bin") + ok + "0"},
      {"", {0, 7, 8}, 2, line("a.bin") + ok + line("b.bin") + failed("7") + fatal},
      {", 0, 1", {0, 7, 8}, 2, line("a.bin") + ok + line("b.bin") + failed("7") + "7"},
      {", 1", {7, 0, 8}, 3, line("a.bin") + failed("7") + line("b.bin") + ok + line("c.bin") + failed("8") + fatal},
      {", 1, 1", {7, 0, 8}, 3, line("a.bin") + failed("7") + line("b.bin") + ok + line("c.bin") + failed("8") + "7"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.further);
    ObedientChannel channel(row.codes);
    const Outcome run = RunOn(channel, "print(executejobfile(\"sub\\\\..\\\\list.dcj\"" + row.further + "));", folder);
    CHECK(run.output.substr(0, row.output.size()) == row.output);
    CHECK(run.result == (row.output.ends_with(fatal) ? EONX_ERR_SCRIPT : EONX_ERR_NONE));
    std::vector<std::string> transfers{"TransmitFile " + folder.PathOf("a.bin") + " 1 2 0",
                                       "TransmitFile " + folder.PathOf("sub\\b.bin") + " 3 4 2",
                                       "TransmitFile Q:\\c.bin 5 6 1"};
    transfers.resize(row.transfers);
    CHECK(run.transfers == transfers);
  }
}

TEST_CASE("device functions without an output function") {
  const TemporaryFolder folder;
  folder.Write("list.dcj", "a.bin\t1\t2\tnormal\n");
  ObedientChannel channel({0, 5, 0}, {0, 40});
  CScriptRunner runner(&channel);
  runner.SetChannel(&channel);
  const char* script =
      "transmitfile(\"a\", 1, 1, 0); transmitfilefromstring(\"a\", 1, 1, 0, 1); executejobfile(\"list.dcj\");"
      "executesubscript(\"no.dcs\");";
  CHECK(runner.ExecuteScript(script, folder.Path().c_str(), nullptr, nullptr) == EONX_ERR_SCRIPT);
  CHECK(channel.Calls().size() == 5); // the three transfers between Lock and Unlock
}

TEST_CASE("receivestring collects until the device is silent or fails") {
  class TalkingChannel : public GuardedChannel {
  public:
    explicit TalkingChannel(std::deque<std::string> pieces, std::int32_t last) : m_pieces(pieces), m_last(last) {}
    std::int32_t Receive(char* buffer, std::uint32_t size, std::uint64_t* received) override {
      GuardedChannel::Receive(buffer, size, received);
      if (m_pieces.empty())
        return m_last;
      const std::string piece = m_pieces.front();
      m_pieces.pop_front();
      CHECK(piece.size() <= size);
      *received = piece.copy(buffer, size);
      return 0;
    }

  private:
    std::deque<std::string> m_pieces;
    std::int32_t m_last;
  };
  struct Row {
    std::deque<std::string> pieces;
    std::int32_t last;
    std::string text;
  };
  const Row rows[] = {
      {{}, 0, ""},
      {{"ab", "cd"}, 3, "abcd"},
      {{std::string(1024, 'x'), std::string("y\0z", 3)}, 0, std::string(1024, 'x') + "y\\0z"},
      {{"ab", "", "cd"}, 0, "ab"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.text);
    TalkingChannel channel(row.pieces, row.last);
    ScriptHarness harness;
    harness.Runner().SetChannel(&channel);
    CHECK(harness.Run("print(receivestring());") == row.text);
  }
}
