#include "filemanager/CopyTexts.h"

#include <doctest/doctest.h>

TEST_CASE("files copied so far") {
  CHECK(CopiedSoFarText(0, 1) == "0 files of 1 copied so far...");
  CHECK(CopiedSoFarText(1, 2) == "1 file of 2 copied so far...");
  CHECK(CopiedSoFarText(2, 10000) == "2 files of 10000 copied so far...");
}

TEST_CASE("as much of the path's end as fits") {
  // Every character is one wide.
  const auto shown = [](const std::string& path, std::size_t room) {
    return CurrentFileText(path, [room](const std::string& text) { return text.size() <= room; });
  };
  const std::string head = "Currently copying ";
  struct Case {
    const char* path;
    std::size_t room; // behind the head
    const char* text;
  };
  const Case cases[] = {
      {"C:\\abcdef", 100, "C:\\abcdef"},
      {"C:\\abcdef", 9, "C:\\abcdef"},
      {"C:\\abcdef", 8, "...bcdef"},
      {"C:\\abcdef", 5, "...ef"},
      {"C:\\abcdef", 4, "...f"},
      {"C:\\abcdef", 3, "..."},
      {"C:\\abcdef", 0, "..."},
      {"ab", 1, "..."},
      {"a", 0, "..."},
      {"", 0, ""},
      {"", 100, ""},
  };
  for (const Case& c : cases) {
    CAPTURE(c.path);
    CAPTURE(c.room);
    CHECK(shown(c.path, head.size() + c.room) == head + c.text);
  }
  CHECK(shown("C:\\abcdef", 0) == head + "...");
}

TEST_CASE("a long path takes few measurements") {
  int measured = 0;
  CurrentFileText(std::string(260, 'x'), [&](const std::string& text) {
    ++measured;
    return text.size() < 100;
  });
  CHECK(measured <= 10);
}

TEST_CASE("the report has one line for each failed file") {
  std::vector<TFILEENTRY> files(3);
  files[0].path = "C:\\a";
  files[1].path = "C:\\b %s";
  files[2].path = "C:\\c";
  const auto words = [](std::int32_t code) { return "error " + std::to_string(code); };
  CHECK(CopyErrorsText({}, files, words).empty());
  CHECK(CopyErrorsText({{1, -7}}, files, words) == "Error during copying C:\\b %s: error -7");
  CHECK(CopyErrorsText({{0, 1}, {2, 3}}, files, words) ==
        "Error during copying C:\\a: error 1\nError during copying C:\\c: error 3");
}
