// Whether the user is asked at all; tests/scripts/questions has the questions and answers.

#include "scriptrt/question/Prompter.h"
#include "tests/script/ScriptHarness.h"

namespace {

// Cancels everything, and counts.
struct BusyPrompter : Prompter {
  int asked = 0;

  void ShowMessage(const std::string&, const std::string&) override { ++asked; }
  std::optional<std::uint64_t> AskNumber(const NumberQuestion&) override { return ++asked, std::nullopt; }
  std::optional<std::string> AskText(const std::string&, const std::string&, const std::string&) override {
    return ++asked, std::nullopt;
  }
  std::optional<std::size_t> AskItem(const std::string&, const std::string&, const std::vector<std::string>&,
                                     std::uint64_t) override {
    return ++asked, std::nullopt;
  }
};

} // namespace

TEST_CASE("a question that could not tell whether it was answered is not asked") {
  BusyPrompter busy;
  ScriptHarness harness;
  harness.Session().SetPrompter(&busy);
  for (const std::string call : {"userinputint32(\"\", \"\", 1, 0, 2", "userinputstring(\"\", \"\", \"\"",
                                 "userlistinput(\"\", \"\", \"a\", 0"}) {
    CAPTURE(call);
    busy.asked = 0;
    CHECK(harness.Run("var string s; print(" + call + ", &s));").starts_with("Type error near line 1/"));
    CHECK(busy.asked == 0);
    CHECK(harness.Run("var int32 n; n = 7; print(" + call + ", &n), n);").ends_with("0"));
    CHECK(busy.asked == 1);
  }
}
