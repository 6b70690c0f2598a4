#include "util/ScriptPath.h"

#include <doctest/doctest.h>

TEST_CASE("names in scripts are relative to the script's folder") {
  struct Row {
    std::string name;
    std::string path; // in a script of C:\jobs
  };
  const Row rows[] = {
      {"a.txt", "C:\\jobs\\a.txt"},
      {"..\\a.txt", "C:\\jobs\\..\\a.txt"},
      {"\\a.txt", "C:\\a.txt"},
      {"D:a.txt", "D:a.txt"},
      {"D:", "D:"},
      {"D", "C:\\jobs\\D"},
      {"\\\\srv\\a", "\\\\srv\\a"},
      {"\\", ""},
      {"", ""},
      {std::string("a\0b", 3), ""}, // the system would see another file
  };
  for (const Row& row : rows) {
    CAPTURE(row.name);
    CHECK(ResolveScriptPath("C:\\jobs", row.name) == row.path);
  }
}
