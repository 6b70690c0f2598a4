// What the operator is asked; tests/scripts/questions has the answers.

#include "scriptrt/question/Operator.h"
#include "tests/script/ScriptHarness.h"

namespace {

// Writes the questions down and cancels them.
class SilentOperator : public CONXOperator {
public:
  std::vector<std::string> asked;

  void ShowMessage(const std::string& caption, const std::string& text) override {
    asked.push_back("message " + caption + " " + text);
  }
  std::optional<std::uint64_t> AskNumber(const NumberQuestion& question) override {
    asked.push_back("number " + question.caption + " " + question.prompt + " " + std::to_string(question.type) + " " +
                    std::to_string(question.initial) + " " + std::to_string(question.minimum) + " " +
                    std::to_string(question.maximum));
    return std::nullopt;
  }
  std::optional<std::string> AskText(const std::string& caption, const std::string& prompt,
                                     const std::string& initial) override {
    asked.push_back("text " + caption + " " + prompt + " " + initial);
    return std::nullopt;
  }
  std::optional<std::size_t> AskItem(const std::string& caption, const std::string& prompt,
                                     const std::vector<std::string>& items, std::uint64_t initial) override {
    asked.push_back("item " + caption + " " + prompt + " [" + Joined(items) + "] " + std::to_string(initial));
    return std::nullopt;
  }
};

} // namespace

TEST_CASE("questions reach the operator with all that the script says") {
  struct Row {
    const char* script;
    const char* output;
    const char* asked;
  };
  const Row rows[] = {
      {"messagebox(\"c\", \"t\");", "", "message c t"},
      {"print(userinputdword(\"c\", \"p\", 7));", "7", "number c p 1 7 0 4294967295"},
      {"print(userinputint32(\"c\", \"p\", 9, 2, 5));", "9", "number c p 3 5 2 5"},
      {"print(userinputuint64(\"c\", \"p\", 1, 2, 5));", "1", "number c p 4 2 2 5"},
      {"print(userinputint64(\"c\", \"p\", 3, 3, 3));", "3", "number c p 5 3 3 3"},
      {"print(userinputstring(\"c\", \"p\", \"d\"));", "d", "text c p d"},
      {"print(userlistinput(\"c\", \"p\", \"x\\0\\0yz\", 2));", "-1", "item c p [x, , yz] 2"},
      {"print(userlistinput(\"c\", \"p\", \"\", 0));", "-1", "item c p [] 0"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.script);
    SilentOperator silent;
    ScriptHarness harness;
    harness.Runner().SetOperator(&silent);
    CHECK(harness.Run(row.script) == row.output);
    CHECK(Joined(silent.asked) == row.asked);
  }
}

TEST_CASE("a question that could not tell whether it was answered is not asked") {
  for (const char* call : {"userinputint32(\"\", \"\", 1, 0, 2, &s)", "userinputstring(\"\", \"\", \"\", &s)",
                           "userlistinput(\"\", \"\", \"a\", 0, &s)"}) {
    CAPTURE(call);
    SilentOperator silent;
    ScriptHarness harness;
    harness.Runner().SetOperator(&silent);
    CHECK(harness.Run(std::string("var string s; print(") + call + ");").starts_with("Type error near line 1/"));
    CHECK(silent.asked.empty());
  }
}
