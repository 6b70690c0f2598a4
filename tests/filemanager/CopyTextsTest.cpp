#include "filemanager/CopyTexts.h"

#include <doctest/doctest.h>

TEST_CASE("how many files are copied") {
  CHECK(CopiedSoFarText(0, 3) == "0 files of 3 copied so far...");
  CHECK(CopiedSoFarText(1, 1) == "1 file of 1 copied so far...");
  CHECK(CopiedSoFarText(2, 3) == "2 files of 3 copied so far...");
}

TEST_CASE("of a path that is too long the end is shown, as much as fits") {
  const std::string path = "C:\\jobs\\calibration\\tables.bin";
  const std::string current = "Currently copying ";
  for (std::size_t room = 0; room <= path.size() + 5; ++room) {
    CAPTURE(room);
    const auto fits = [&](const std::string& text) { return text.size() <= current.size() + room; };
    const std::size_t kept = room < 3 ? 0 : std::min(room - 3, path.size() - 1);
    CHECK(CurrentFileText(path, fits) ==
          current + (room >= path.size() ? path : "..." + path.substr(path.size() - kept)));
  }
  CHECK(CurrentFileText("", [](const std::string&) { return false; }) == current);
}

TEST_CASE("errors are told a line each, in the channel's words") {
  const std::vector<TFILEENTRY> files = {{"a", 0, 1, 1, 0}, {"b", 0, 2, 1, 0}, {"c", 0, 3, 1, 0}};
  const auto words = [](std::int32_t code) { return "error " + std::to_string(code); };
  CHECK(CopyErrorsText({}, files, words) == "");
  CHECK(CopyErrorsText({{1, 7}}, files, words) == "Error during copying b: error 7");
  CHECK(CopyErrorsText({{0, -1}, {2, 7}}, files, words) ==
        "Error during copying a: error -1\nError during copying c: error 7");
}
