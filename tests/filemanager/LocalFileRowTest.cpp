#include "filemanager/LocalFileRow.h"

#include <doctest/doctest.h>

namespace {

std::string Text(const TLOCALFILEROW& row) {
  return row.path + "|" + row.fileId + "|" + row.fileType + "|" + row.fileMode;
}

} // namespace

TEST_CASE("a chosen file's row") {
  struct Case {
    const char* path;
    const char* mode;
  };
  const Case cases[] = {
      {"C:\\a.bin", "normal"},
      {"C:\\a.rbf", "program"},
      {"C:\\A.RBF", "program"},
      {"C:\\a.rBf", "program"},
      {"C:\\a.rbfx", "normal"},
      {"C:\\arbf", "normal"},
      {".rbf", "program"},
      {"abcd", "normal"},
      {"abc", ""},
      {"rbf", ""},
      {"", ""},
  };
  for (const Case& c : cases) {
    CAPTURE(c.path);
    CHECK(Text(DefaultRowOf(c.path)) == std::string(c.path) + "|0|1|" + c.mode);
  }
}

TEST_CASE("what a row's texts mean") {
  struct Case {
    const char *id, *type, *mode;
    int idIs, typeIs;
    std::uint32_t modeIs;
  };
  const Case cases[] = {
      {"7", "9", "normal", 7, 9, OND_FILE_NORMAL},
      {"255", "0", "bit reverse", 255, 0, OND_FILE_BIT_REVERSE},
      {"256", "300", "program", 0, 44, OND_FILE_PROGRAM},
      {"", "", "", 0, 1, OND_FILE_NORMAL},
      {"x", "-", "Bit Reverse", 0, 1, OND_FILE_BIT_REVERSE},
      {" 12abc", "+3", "PROGRAM", 12, 3, OND_FILE_PROGRAM},
      {"-1", "99999999999999999999", "program ", 255, 255, OND_FILE_NORMAL},
  };
  for (const Case& c : cases) {
    CAPTURE(c.id);
    const TFILEENTRY entry = EntryOf({"C:\\p", c.id, c.type, c.mode});
    CHECK(entry.path == "C:\\p");
    CHECK(entry.fileId == c.idIs);
    CHECK(entry.fileType == c.typeIs);
    CHECK(entry.fileMode == c.modeIs);
  }
}

TEST_CASE("an entry's row, and back") {
  struct Case {
    std::uint32_t mode;
    const char* row;
    std::uint32_t back;
  };
  const Case cases[] = {{OND_FILE_NORMAL, "C:\\p|200|3|normal", OND_FILE_NORMAL},
                        {OND_FILE_BIT_REVERSE, "C:\\p|200|3|bit reverse", OND_FILE_BIT_REVERSE},
                        {OND_FILE_PROGRAM, "C:\\p|200|3|program", OND_FILE_PROGRAM},
                        {77, "C:\\p|200|3|normal", OND_FILE_NORMAL}};
  for (const Case& c : cases) {
    TFILEENTRY entry;
    entry.path = "C:\\p";
    entry.fileId = 200;
    entry.fileType = 3;
    entry.fileMode = c.mode;
    CHECK(Text(RowOf(entry)) == c.row);
    CHECK(EntryOf(RowOf(entry)).fileMode == c.back);
    CHECK(EntryOf(RowOf(entry)).fileId == 200);
  }
}
