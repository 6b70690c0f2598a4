#include "host/talk/AnswerView.h"

#include <doctest/doctest.h>

using namespace host;

namespace {

// Cut at every place, and the pieces with or without what is held back between them.
void CheckEverywhere(ViewMode mode, const std::string& bytes, const std::string& expected) {
  for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
    AnswerView view(mode);
    std::string text = view.Feed(bytes.substr(0, cut));
    text += view.Feed(bytes.substr(cut));
    CHECK(text + view.Break() == expected);
  }
}

} // namespace

TEST_CASE("text is the same wherever the bytes are cut, and has no control characters") {
  CheckEverywhere(ViewMode::kText, "a\r\nb\rc\n\nd\r\r\n", "a\nb\nc\n\nd\n\n");
  CheckEverywhere(ViewMode::kText, "\x1B[2J\x07\x7F\x9B", "\\(x1B)[2J\\(x07)\\(x7F)\xE2\x80\xBA\n");
  CheckEverywhere(ViewMode::kText, "\xC2\x9B\x81", "\xC3\x82\xE2\x80\xBA\\(x81)\n"); // what terminals take as commands
  CheckEverywhere(ViewMode::kText, "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\n");
  CheckEverywhere(ViewMode::kText, "\xE4g\xE2\x82\n", "\xC3\xA4g\xC3\xA2\xE2\x80\x9A\n"); // Windows-1252
  CheckEverywhere(ViewMode::kText, "ab\tc\t\td", "ab      c               d\n");
  CheckEverywhere(ViewMode::kRaw, "a\r\n\x1B", "a\r\n\x1B\n");
  CheckEverywhere(ViewMode::kHex, "abcdefghijklmnop\r",
                  "61 62 63 64 65 66 67 68 69 6A 6B 6C 6D 6E 6F 70  abcdefghijklmnop\n"
                  "0D                                               .\n");
}

TEST_CASE("each line begins with what the caller wants, an empty one too") {
  int number = 0;
  AnswerView view(ViewMode::kText, [&] { return std::to_string(++number) + ": "; });
  CHECK(view.Feed("a\n\nb") == "1: a\n2: \n3: b");
  CHECK(view.Break() == "\n");
  CHECK(view.Break().empty());
  CHECK(view.Feed("c\r") == "4: c\n");
}
