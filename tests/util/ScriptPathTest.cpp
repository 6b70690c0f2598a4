#include "util/ScriptPath.h"

#include <doctest/doctest.h>

TEST_CASE("ResolveScriptPath") {
  struct Row {
    std::string base;
    std::string name;
    std::string path;
  };
  const Row rows[] = {
      {"C:\\scripts", "", ""},
      {"C:\\scripts", "a.txt", "C:\\scripts\\a.txt"},
      {"C:\\scripts", "sub\\a.txt", "C:\\scripts\\sub\\a.txt"},
      {"C:\\scripts", "\\", ""},
      {"C:\\scripts", "\\a.txt", "C:\\a.txt"},
      {"C:\\scripts", "\\\\srv\\a.txt", "\\\\srv\\a.txt"},
      {"C:\\scripts", "\\\\", "\\\\"},
      {"C:\\scripts", "D:\\a.txt", "D:\\a.txt"},
      {"C:\\scripts", ":", "C:\\scripts\\:"},
      {"C:\\scripts", "/a.txt", "C:\\scripts\\/a.txt"}, // only the backslash separates
      {"C:", "\\a.txt", "C:\\a.txt"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.base);
    CAPTURE(row.name);
    CHECK(ResolveScriptPath(row.base, row.name) == row.path);
  }
}
