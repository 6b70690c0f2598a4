#include "filemanager/CopyLoop.h"
#include "tests/support/GuardedChannel.h"

namespace {

// Writes down what it hears; aborts the copy at a step of a file when told to.
class Receiver : public CCopyReceiver {
public:
  void OnFileStarted(std::size_t index) noexcept override { m_heard.push_back("file " + std::to_string(index)); }
  void OnStepsDone(std::uint32_t steps) noexcept override {
    m_heard.push_back(std::to_string(steps));
    if (steps == abortAt)
      loop->Abort();
  }
  std::string Heard() const { return Joined(m_heard); }

  CCopyLoop* loop = nullptr;
  std::uint32_t abortAt = 1000; // never

private:
  std::vector<std::string> m_heard;
};

std::vector<TFILEENTRY> Files(std::size_t count) {
  const std::vector<TFILEENTRY> all = {{"C:\\a.bin", 0, 1, 2, OND_FILE_NORMAL},
                                       {"C:\\b.rbf", 0, 255, 0, OND_FILE_PROGRAM},
                                       {"C:\\c.bin", 0, 3, 4, OND_FILE_BIT_REVERSE}};
  return {all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count)};
}

std::string Listed(const std::vector<TCOPYERROR>& errors) {
  std::vector<std::string> texts;
  for (const TCOPYERROR& error : errors)
    texts.push_back(std::to_string(error.index) + ":" + std::to_string(error.code));
  return Joined(texts);
}

} // namespace

TEST_CASE("the files are sent in order, up to the first failure or past it") {
  struct Row {
    std::deque<std::int32_t> codes; // what the channel answers
    bool goesOn;
    std::int32_t result;
    std::string errors;
    std::string heard;
  };
  const Row rows[] = {
      {{}, false, 0, "", "file 0, file 1, file 2"},
      {{}, true, 0, "", "file 0, file 1, file 2"},
      {{0, 7, 0}, false, 7, "1:7", "file 0, file 1"},
      {{0, 7, -9}, true, 7, "1:7, 2:-9", "file 0, file 1, file 2"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.errors);
    CAPTURE(row.goesOn);
    GuardedChannel channel;
    channel.Lock(&channel, 0);
    channel.Fail("TransmitFile", row.codes);
    CCopyLoop loop(&channel, Files(3), row.goesOn);
    Receiver receiver;
    CHECK(loop.Run(receiver) == row.result);
    CHECK(Listed(loop.Errors()) == row.errors);
    CHECK(receiver.Heard() == row.heard);
    channel.Unlock(&channel);
  }
}

TEST_CASE("each file goes out with its properties and tells of its steps") {
  GuardedChannel channel;
  channel.Lock(&channel, 0);
  channel.duringTransfer = [](TransferProgressCallback report, void* context) {
    CHECK(report(context, 5) == 0);
    return report(context, 100);
  };
  CCopyLoop loop(&channel, Files(3), false);
  Receiver receiver;
  CHECK(loop.Run(receiver) == 0);
  CHECK(Joined(channel.Calls()) == "TransmitFile C:\\a.bin 1 2 0 1 100, TransmitFile C:\\b.rbf 255 0 2 1 100, "
                                   "TransmitFile C:\\c.bin 3 4 1 1 100");
  CHECK(receiver.Heard() == "file 0, 5, 100, file 1, 5, 100, file 2, 5, 100");
  channel.Unlock(&channel);
}

TEST_CASE("an abort asks the channel to break off and begins no further file") {
  struct Row {
    std::int32_t code; // what the channel makes of it
    bool goesOn;
    std::int32_t result;
    std::string errors;
  };
  const Row rows[] = {
      {0, false, EONX_ERR_ABORTED, ""}, // the file was sent all the same
      {7, true, EONX_ERR_ABORTED, "0:7"},
      {7, false, 7, "0:7"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.code);
    CAPTURE(row.goesOn);
    GuardedChannel channel;
    channel.Lock(&channel, 0);
    channel.duringTransfer = [&](TransferProgressCallback report, void* context) {
      CHECK(report(context, 4) == 0);
      CHECK(report(context, 5) != 0);
      return row.code;
    };
    CCopyLoop loop(&channel, Files(2), row.goesOn);
    Receiver receiver;
    receiver.loop = &loop;
    receiver.abortAt = 5;
    CHECK(loop.Run(receiver) == row.result);
    CHECK(Listed(loop.Errors()) == row.errors);
    CHECK(receiver.Heard() == "file 0, 4, 5");
    channel.Unlock(&channel);
  }
}

TEST_CASE("without a channel nothing is copied") {
  CCopyLoop loop(nullptr, Files(2), false);
  Receiver receiver;
  CHECK(loop.Run(receiver) == 0);
  CHECK(receiver.Heard() == "");
}
