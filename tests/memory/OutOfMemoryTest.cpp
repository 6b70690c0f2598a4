// Memory that runs out at every allocation in turn: each time the work either succeeds or fails with what it promises,
// and nothing ends the process.
#include "scriptrt/run/ScriptSession.h"
#include "tests/memory/FailingMemory.h"
#include "tests/support/GuardedChannel.h"
#include "tests/support/TemporaryFolder.h"
#include "util/JobFile.h"

#include <doctest/doctest.h>

#include <array>
#include <optional>
#include <string_view>

namespace {

// The double needs memory for its records, which is not the client's want.
class ChannelWithMemory : public GuardedChannel {
  void Enter(const char*) override { m_again.emplace(); }
  void Leave(const char*) override { m_again.reset(); }

  std::optional<MemoryAgain> m_again;
};

// What a run printed, in memory of its own.
struct Output {
  std::array<char, 4096> text;
  std::size_t size = 0;

  static void Collect(void* context, const char* text) {
    auto& self = *static_cast<Output*>(context);
    self.size += std::string_view(text).copy(self.text.data() + self.size, self.text.size() - self.size);
  }
  std::string_view Text() const { return {text.data(), size}; }
};

constexpr std::string_view kSetUpFailed = "out of memory error near line 1/column 1 (offset 0) during parsing\n";

constexpr const char* kScript = R"(
func twice(var string s) { twice = s + s; }
func apply(func f, var string s) { if (strlen(s)) { apply = f(s); } }
var string text; var int32 i;
while (i < 3) { text += apply(&twice, numtostr(i) + "-----------------------------"); i += 1; }
writestringtofile("note.txt", text);
transmitstring(readstringfromfile("note.txt") + receivestring());
executesubscript("sub.dcs");
executesubscriptfunc("sub.dcs", "f", text);
executejobfile("list.dcj");
print("done\n");
)";

// Runs `work` with less and less shortage until nothing failed. Returns how often it failed.
template <typename Work>
std::size_t UntilMemorySuffices(MemoryShortage shortage, Work work) {
  constexpr std::size_t kMost = 20000;
  std::size_t allocations = 0;
  for (bool failed = true; failed && allocations < kMost; ++allocations) {
    CAPTURE(allocations);
    failed = work(allocations, shortage);
  }
  CHECK(allocations < kMost);
  return allocations - 1;
}

} // namespace

TEST_CASE("a run that memory fails ends with its diagnostic line") {
  const TemporaryFolder folder;
  folder.Write("run.dcs", kScript);
  folder.Write("sub.dcs", "func f(var string s) { print(\"f\\n\"); } print(\"sub\\n\");");
  folder.Write("list.dcj", "a.bin\t1\t2\tnormal\n");
  const std::string path = folder.PathOf("run.dcs");
  for (const MemoryShortage shortage : {MemoryShortage::kOnce, MemoryShortage::kLasting}) {
    std::size_t duringSetUp = 0;
    std::size_t whileReading = 0;
    const std::size_t failures = UntilMemorySuffices(shortage, [&](std::size_t first, MemoryShortage kind) {
      ChannelWithMemory channel;
      int owner = 0;
      ScriptSession session(&owner);
      session.SetChannel(&channel);
      Output output;
      EONX_ERR_ERRCODE_ result;
      bool failed;
      {
        const FailingMemory memory(first, kind);
        result = session.ExecuteScriptFile(path.c_str(), Output::Collect, &output);
        failed = memory.HasFailed();
      }
      const std::string_view text = output.Text();
      CAPTURE(std::string(text));
      if (result == EONX_ERR_NONE) {
        CHECK(text.ends_with("sub\nf\n\ra.bin ........................................ -> OK\ndone\n"));
      } else if (result == EONX_ERR_OUT_OF_MEMORY) { // the file was not read yet: no run
        CHECK(text == "");
        ++whileReading;
      } else {
        CHECK(result == EONX_ERR_SCRIPT);
        const std::string_view lastLine = text.substr(text.substr(0, text.size() - 1).rfind('\n') + 1);
        CHECK((lastLine.find(" near line ") != std::string_view::npos && lastLine.ends_with("ing\n")));
        duringSetUp += text == kSetUpFailed ? 1 : 0;
      }
      CHECK(channel.LockDepth() == 0);
      return failed;
    });
    CHECK(failures > 200);
    CHECK(duringSetUp > 50); // the built-ins alone are more
    CHECK(whileReading > 0);
  }
}

TEST_CASE("a save that memory fails leaves the folder as it was") {
  const TemporaryFolder folder;
  const std::string path = folder.PathOf("list.dcj");
  std::vector<TFILEENTRY> entries(3);
  for (TFILEENTRY& entry : entries)
    entry.path = folder.PathOf("a file of some length.bin");
  for (const MemoryShortage shortage : {MemoryShortage::kOnce, MemoryShortage::kLasting}) {
    const std::size_t failures = UntilMemorySuffices(shortage, [&](std::size_t first, MemoryShortage kind) {
      folder.Write("list.dcj", "before");
      int result;
      bool failed;
      {
        const FailingMemory memory(first, kind);
        result = SaveJobFile(path.c_str(), &entries);
        failed = memory.HasFailed();
      }
      CHECK(result == (failed ? 0 : 1));
      CHECK((folder.Read("list.dcj") == "before") == failed);
      CHECK(folder.Names() == std::vector<std::string>{"list.dcj"});
      return failed;
    });
    CHECK(failures > 10);
  }
}
