// What scripts ask the operator, and what becomes of the answers.

#include "scriptrt/NumberAnswer.h"
#include "scriptrt/Operator.h"
#include "tests/script/ScriptHarness.h"

#include <doctest/doctest.h>

namespace {

// Writes down each question and answers it; without an answer it cancels.
class ScriptedOperator : public CONXOperator {
public:
  void ShowMessage(const std::string& caption, const std::string& message) override {
    asked += caption + "|" + message + "\n";
  }
  std::optional<std::uint64_t> AskNumber(const NumberQuestion& question) override {
    asked += question.caption + "|" + question.prompt;
    for (const std::uint64_t value : {question.initial, question.minimum, question.maximum})
      asked += "|" + NumberForOperator(question, value);
    asked += "\n";
    return number;
  }
  std::optional<std::string> AskText(const std::string& caption, const std::string& prompt,
                                     const std::string& initial) override {
    asked += caption + "|" + prompt + "|" + initial + "\n";
    return text;
  }
  std::optional<std::size_t> AskItem(const std::string& caption, const std::string& prompt,
                                     const std::vector<std::string>& items, std::uint64_t initial) override {
    asked += caption + "|" + prompt + "|" + std::to_string(initial);
    for (const std::string& each : items)
      asked += "|" + each;
    asked += "\n";
    return item;
  }

  std::string asked;
  std::optional<std::uint64_t> number;
  std::optional<std::string> text;
  std::optional<std::size_t> item;
};

struct Asking : ScriptHarness {
  Asking() { Runner().SetOperator(&person); }
  ScriptedOperator person;
};

} // namespace

TEST_CASE("number questions: limits by type, default within them") {
  Asking asking;
  const std::string output = asking.Run("userinputdword(\"T\", \"P\", 50, 10, 20);"
                                        "userinputint32(\"T\", \"P\", -7, -5, 5);"
                                        "userinputuint32(\"T\", \"P\", 1);"
                                        "userinputint32(\"T\", \"P\", 0x1FFFFFFFF);"
                                        "userinputuint64(\"T\", \"P\", -1);"
                                        "userinputint64(\"T\", \"P\", 2);");
  CHECK(output.empty());
  CHECK(asking.person.asked == "T|P|20|10|20\n"
                               "T|P|-5|-5|5\n"
                               "T|P|1|0|4294967295\n"
                               "T|P|-1|-2147483648|2147483647\n"
                               "T|P|18446744073709551615|0|18446744073709551615\n"
                               "T|P|2|-9223372036854775808|9223372036854775807\n");
}

TEST_CASE("answers, cancelled questions and `confirmed`") {
  const char* script = "var int64 ok; ok = 7;"
                       "print(userinputdword(\"\", \"\", 50, 10, 20, &ok), ok, \" \");"
                       "print(userinputstring(\"\", \"\", \"me\", &ok), ok, \" \");"
                       "print(userlistinput(\"\", \"\", \"a\\0b\\0\", 1, &ok), ok);";
  Asking asking;
  CHECK(asking.Run(script) == "500 me0 -10"); // the default as it was passed, not as it was shown
  asking.person.number = 12;
  asking.person.text = "you";
  asking.person.item = 0;
  CHECK(asking.Run(script) == "121 you1 01");
  asking.Runner().SetOperator(nullptr);
  CHECK(asking.Run(script) == "500 me0 -10");
}

TEST_CASE("lists are split at zero bytes, what stands behind the last one included") {
  Asking asking;
  asking.Run("userlistinput(\"C\", \"P\", \"a\\0\\0b\\0\", 0); userlistinput(\"C\", \"P\", \"a\\0b\", -1);"
             "userlistinput(\"C\", \"P\", \"\", 0); messagebox(\"Caption\", \"Text\");");
  CHECK(asking.person.asked == "C|P|0|a||b\nC|P|18446744073709551615|a|b\nC|P|0\nCaption|Text\n");
}

TEST_CASE("wrong questions are not asked") {
  Asking asking;
  CHECK(asking.Run("userinputint32(\"T\", \"P\", 0, 5, 1);").find("System function failed") == 0);
  CHECK(asking.Run("userinputdword(\"T\", \"P\", 0, 0x1FFFFFFFF, 1);").find("System function failed") == 0);
  CHECK(asking.Run("userinputdword(\"T\", \"P\", 0, 5);").find("Wrong number of parameters") == 0);
  CHECK(asking.Run("var string s; userinputdword(\"T\", \"P\", 0, 0, 5, &s);").find("Type error") == 0);
  CHECK(asking.Run("messagebox(\"a\");").find("Wrong number of parameters") == 0);
  CHECK(asking.person.asked.empty());
}
