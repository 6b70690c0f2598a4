#include "filemanager/CopyLoop.h"
#include "tests/support/GuardedChannel.h"

namespace {

constexpr std::uint32_t kNever = 1000;

// Writes down what it hears; aborts the copy at a step of a file.
class Receiver : public CCopyReceiver {
public:
  Receiver(CCopyLoop& loop, std::uint32_t abortAt) : m_loop(loop), m_abortAt(abortAt) {}
  void OnFileStarted(std::size_t index) noexcept override { heard += "file " + std::to_string(index) + " "; }
  void OnStepsDone(std::uint32_t steps) noexcept override {
    heard += std::to_string(steps) + " ";
    if (steps == m_abortAt)
      m_loop.Abort();
  }

  std::string heard;

private:
  CCopyLoop& m_loop;
  std::uint32_t m_abortAt;
};

const std::vector<TFILEENTRY> kFiles = {{"C:\\a.bin", 0, 1, 2, OND_FILE_NORMAL},
                                        {"C:\\b.rbf", 0, 255, 0, OND_FILE_PROGRAM},
                                        {"C:\\c.bin", 0, 3, 4, OND_FILE_BIT_REVERSE}};

} // namespace

TEST_CASE("the files are sent in order until one fails, all have been tried, or the user aborts") {
  struct Row {
    std::deque<std::int32_t> codes; // what the channel answers
    bool goesOn;
    std::uint32_t abortAt;
    std::int32_t result;
    std::string errors;
    std::string heard;
  };
  const Row rows[] = {
      {{}, false, kNever, 0, "", "file 0 5 100 file 1 5 100 file 2 5 100 "},
      {{0, 7, 0}, false, kNever, 7, "1:7 ", "file 0 5 100 file 1 5 100 "},
      {{0, 7, -9}, true, kNever, 7, "1:7 2:-9 ", "file 0 5 100 file 1 5 100 file 2 5 100 "},
      {{0}, true, 5, EONX_ERR_ABORTED, "", "file 0 5 "}, // the file was sent all the same
      {{7}, true, 5, EONX_ERR_ABORTED, "0:7 ", "file 0 5 "},
      {{7}, false, 5, 7, "0:7 ", "file 0 5 "},
  };
  for (const Row& row : rows) {
    CAPTURE(row.errors);
    CAPTURE(row.goesOn);
    GuardedChannel channel;
    channel.Lock(&channel, 0);
    channel.Fail("TransmitFile", row.codes);
    channel.duringTransfer = [](TransferProgressCallback report, void* context) {
      if (report(context, 5) == 0) // another answer asks the channel to break off
        report(context, 100);
      return 0;
    };
    CCopyLoop loop(&channel, kFiles, row.goesOn);
    Receiver receiver(loop, row.abortAt);
    CHECK(loop.Run(receiver) == row.result);
    std::string errors;
    for (const TCOPYERROR& error : loop.Errors())
      errors += std::to_string(error.index) + ":" + std::to_string(error.code) + " ";
    CHECK(errors == row.errors);
    CHECK(receiver.heard == row.heard);
    const std::string all = "TransmitFile C:\\a.bin 1 2 0 1 100, TransmitFile C:\\b.rbf 255 0 2 1 100, "
                            "TransmitFile C:\\c.bin 3 4 1 1 100";
    CHECK(all.starts_with(Joined(channel.Calls())));
    channel.Unlock(&channel);
  }
}

TEST_CASE("without a channel nothing is copied") {
  CCopyLoop loop(nullptr, kFiles, false);
  Receiver receiver(loop, kNever);
  CHECK(loop.Run(receiver) == 0);
  CHECK(receiver.heard == "");
}
