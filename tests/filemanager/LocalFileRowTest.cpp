#include "filemanager/LocalFileRow.h"

#include <doctest/doctest.h>

namespace {

std::string Text(const TLOCALFILEROW& row) {
  return row.path + "|" + row.fileId + "|" + row.fileType + "|" + row.fileMode;
}

} // namespace

TEST_CASE("a row shows a file's properties, and means them") {
  const TFILEENTRY entries[] = {{"C:\\a.bin", 0, 0, 1, OND_FILE_NORMAL},
                                {"b", 0, 255, 20, OND_FILE_BIT_REVERSE},
                                {"c", 0, 7, 255, OND_FILE_PROGRAM}};
  const char* const rows[] = {"C:\\a.bin|0|1|normal", "b|255|20|bit reverse", "c|7|255|program"};
  for (std::size_t i = 0; i < std::size(entries); ++i) {
    const TLOCALFILEROW row = RowOf(entries[i]);
    CHECK(Text(row) == rows[i]);
    CHECK(Text(RowOf(EntryOf(row))) == rows[i]);
    CHECK(EntryOf(row).fileMode == entries[i].fileMode);
  }
}

TEST_CASE("a file that was just chosen gets the properties that its name suggests") {
  CHECK(Text(DefaultRowOf("C:\\a.bin")) == "C:\\a.bin|0|1|normal");
  CHECK(Text(DefaultRowOf("C:\\a.RbF")) == "C:\\a.RbF|0|1|program");
  CHECK(Text(DefaultRowOf(".rbf")) == ".rbf|0|1|program");
  CHECK(Text(DefaultRowOf("rbf")) == "rbf|0|1|"); // too short for an extension
  CHECK(Text(DefaultRowOf("a.rbf.bin")) == "a.rbf.bin|0|1|normal");
}

TEST_CASE("what a row means when its texts are not what they should be") {
  const auto meant = [](const char* id, const char* type, const char* mode) {
    const TFILEENTRY entry = EntryOf({"p", id, type, mode});
    return std::to_string(entry.fileId) + " " + std::to_string(entry.fileType) + " " + std::to_string(entry.fileMode);
  };
  CHECK(meant("", "x", "") == "0 1 0");
  CHECK(meant("256", "258", "other") == "0 2 0");
  CHECK(meant(" 12abc", "-1", "PROGRAM") == "12 255 2");
  CHECK(meant("3", "4", "Bit Reverse") == "3 4 1");
}
