#include "filemanager/CopyLoop.h"

#include "tests/support/GuardedChannel.h"

#include <doctest/doctest.h>

#include <map>
#include <string>

namespace {

// Sends every file in three steps; files fail, or the user aborts during them, as a test says.
class Sender : public GuardedChannel {
public:
  std::int32_t TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType, std::uint32_t fileMode,
                            TransferProgressCallback callback, void* context, std::uint32_t flag,
                            std::uint32_t steps) override {
    GuardedChannel::TransmitFile(localPath, fileId, fileType, fileMode, callback, context, flag, steps);
    CHECK(flag == 1);
    CHECK(steps == 100);
    if (abortDuring == localPath)
      loop->Abort();
    for (const std::uint32_t step : {0U, 50U, 100U}) {
      if (callback(context, step) != 0 && reportsAbort)
        return kAborted;
    }
    const auto failure = failures.find(localPath);
    return failure == failures.end() ? 0 : failure->second;
  }

  static constexpr std::int32_t kAborted = -9;

  std::map<std::string, std::int32_t> failures;
  std::string abortDuring;
  bool reportsAbort = true; // as a channel that has sent everything already does not
  CCopyLoop* loop = nullptr;
};

class Log : public CCopyReceiver {
public:
  void OnFileStarted(std::size_t index) noexcept override { text += " file " + std::to_string(index); }
  void OnStepsDone(std::uint32_t steps) noexcept override { text += " " + std::to_string(steps); }

  std::string text;
};

std::vector<TFILEENTRY> Files(const std::string& names) {
  std::vector<TFILEENTRY> files;
  for (const char name : names) {
    files.emplace_back().path = name;
    files.back().fileId = static_cast<std::uint8_t>(name);
    files.back().fileType = 7;
    files.back().fileMode = OND_FILE_BIT_REVERSE;
  }
  return files;
}

} // namespace

TEST_CASE("which files are sent, what failed, and what the copy comes to") {
  struct Case {
    const char* name;
    const char* files;
    bool continueOnError;
    std::map<std::string, std::int32_t> failures;
    const char* abortDuring;
    bool reportsAbort;
    const char* sent;
    const char* errors; // index:code
    std::int32_t result;
  };
  const Case cases[] = {
      {"nothing to send", "", true, {}, "", true, "", "", 0},
      {"all go well", "abc", true, {}, "", true, "abc", "", 0},
      {"the second fails, the third is sent", "abc", true, {{"b", 5}}, "", true, "abc", "1:5", 5},
      {"the first failure is the result", "abc", true, {{"a", 4}, {"c", -6}}, "", true, "abc", "0:4 2:-6", 4},
      {"the first failure ends it", "abc", false, {{"a", 4}, {"b", 5}}, "", true, "a", "0:4", 4},
      {"a later failure ends it", "abc", false, {{"b", 5}}, "", true, "ab", "1:5", 5},
      {"aborted, as the channel says", "abc", true, {}, "b", true, "ab", "1:-9", EONX_ERR_ABORTED},
      {"aborted, without continuing", "abc", false, {}, "b", true, "ab", "1:-9", Sender::kAborted},
      {"aborted behind the last step", "abc", true, {}, "b", false, "ab", "", EONX_ERR_ABORTED},
      {"aborted after a failure", "abc", true, {{"a", 4}}, "b", false, "ab", "0:4", EONX_ERR_ABORTED},
      {"aborted during the last file", "abc", true, {}, "c", false, "abc", "", EONX_ERR_ABORTED},
  };
  for (const Case& c : cases) {
    CAPTURE(c.name);
    Sender channel;
    channel.failures = c.failures;
    channel.abortDuring = c.abortDuring;
    channel.reportsAbort = c.reportsAbort;
    CCopyLoop loop(&channel, Files(c.files), c.continueOnError);
    channel.loop = &loop;
    channel.Lock(&loop, 0);
    channel.ForgetCalls();
    Log log;
    CHECK(loop.Run(log) == c.result);

    std::string sent;
    for (const std::string& call : channel.Calls()) {
      const char name = call.substr(std::string("TransmitFile ").size())[0];
      CHECK(call == std::string("TransmitFile ") + name + " " + std::to_string(name) + " 7 1");
      sent += name;
    }
    CHECK(sent == c.sent);
    std::string errors;
    for (const TCOPYERROR& error : loop.Errors())
      errors += (errors.empty() ? "" : " ") + std::to_string(error.index) + ":" + std::to_string(error.code);
    CHECK(errors == c.errors);
    channel.Unlock(&loop);
  }
}

TEST_CASE("the receiver hears of each file and each step, in order") {
  Sender channel;
  CCopyLoop loop(&channel, Files("ab"), true);
  channel.Lock(&loop, 0);
  Log log;
  loop.Run(log);
  channel.Unlock(&loop);
  CHECK(log.text == " file 0 0 50 100 file 1 0 50 100");
}

TEST_CASE("without a channel nothing is sent") {
  CCopyLoop loop(nullptr, Files("ab"), true);
  Log log;
  CHECK(loop.Run(log) == 0);
  CHECK(log.text.empty());
  CHECK(loop.Errors().empty());
}
