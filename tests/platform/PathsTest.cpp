#include "platform/Platform.h"

#include <doctest/doctest.h>

#include <algorithm>

using platform::CurrentFolder;
using platform::FullPath;

TEST_CASE("FullPath resolves steps") {
  struct Row {
    std::string path;
    std::string full;
  };
  const Row rows[] = {
      {"Z:\\a\\b.txt", "Z:\\a\\b.txt"},  {"Z:\\a\\b\\..\\c", "Z:\\a\\c"},
      {"Z:\\a\\..\\..\\..\\b", "Z:\\b"}, {"Z:\\a\\\\b", "Z:\\a\\b"},
      {"Z:\\a\\b\\", "Z:\\a\\b\\"},      {"Z:/a/b", "Z:\\a\\b"},
      {"Q:\\a\\..\\b", "Q:\\b"},         {"\\\\server\\share\\a\\..\\b", "\\\\server\\share\\b"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.path);
    CHECK(FullPath(row.path).value_or("nothing") == row.full);
  }
}

TEST_CASE("FullPath starts from the current folder or its drive") {
  const std::string folder = CurrentFolder();
  REQUIRE(folder.size() > 3);
  CHECK(folder[1] == ':');
  CHECK(folder.back() != '\\');

  CHECK(FullPath("a.txt") == folder + "\\a.txt");
  CHECK(FullPath(".\\a") == folder + "\\a");
  CHECK(FullPath(folder.substr(0, 2) + "a") == folder + "\\a");
  CHECK(FullPath("..") == folder.substr(0, std::max<std::size_t>(folder.rfind('\\'), 3)));
  CHECK(FullPath("\\a\\b") == folder.substr(0, 2) + "\\a\\b");
}
