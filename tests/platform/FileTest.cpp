#include "platform/Platform.h"
#include "tests/support/TemporaryFolder.h"

#include <doctest/doctest.h>

using platform::File;
using Names = std::vector<std::string>;

TEST_CASE("each mode opens what it says") {
  const TemporaryFolder folder;
  folder.Write("there", "0123456");

  CHECK_FALSE(File::Open(folder.PathOf("missing"), File::Mode::kRead));
  CHECK_FALSE(File::Open(folder.PathOf("missing"), File::Mode::kUpdate));
  CHECK_FALSE(File::Open(folder.PathOf("there"), File::Mode::kCreateNew));
  CHECK(folder.Names() == Names{"there"});
  CHECK(folder.Read("there") == "0123456");

  CHECK(File::Open(folder.PathOf("new"), File::Mode::kCreateNew));
  CHECK(File::Open(folder.PathOf("created"), File::Mode::kCreate));
  CHECK(File::Open(folder.PathOf("there"), File::Mode::kCreate));
  CHECK(folder.Names() == Names{"created", "new", "there"});
  CHECK(folder.Read("there").empty());
}

TEST_CASE("names with slashes are fine, folders and drives that are not there are no files") {
  const TemporaryFolder folder;
  folder.Write("a", "x");
  CHECK(File::Open(folder.Path() + "/a", File::Mode::kRead));
  CHECK(File::Open(folder.PathOf("no\\such\\..\\..\\.\\a"), File::Mode::kRead));
  for (const std::string& path : {folder.Path(), folder.PathOf("no\\a"), std::string("Q:\\a"), std::string(),
                                  folder.PathOf(std::string_view("a\0b", 3))}) {
    CAPTURE(path);
    CHECK_FALSE(File::Open(path, File::Mode::kRead));
    CHECK_FALSE(File::Open(path, File::Mode::kUpdate));
    CHECK_FALSE(File::Open(path, File::Mode::kCreate));
    CHECK_FALSE(File::Open(path, File::Mode::kCreateNew));
  }
}

TEST_CASE("a file moves over another one, or nothing happens") {
  const TemporaryFolder folder;
  folder.Write("old", "old");
  folder.Write("new", "new");
  CHECK(platform::MoveFileOver(folder.PathOf("new"), folder.PathOf("old")));
  CHECK(folder.Read("old") == "new");
  CHECK(folder.Names() == Names{"old"});

  CHECK(platform::MoveFileOver(folder.PathOf("old"), folder.PathOf("first")));
  CHECK(folder.Names() == Names{"first"});

  CHECK_FALSE(platform::MoveFileOver(folder.PathOf("missing"), folder.PathOf("first")));
  CHECK(folder.Read("first") == "new");

  std::filesystem::create_directory(folder.SystemPath() / "sub");
  CHECK_FALSE(platform::MoveFileOver(folder.PathOf("first"), folder.PathOf("sub")));
  CHECK(folder.Names() == Names{"first", "sub"});

  platform::RemoveFile(folder.PathOf("first"));
  platform::RemoveFile(folder.PathOf("missing"));
  CHECK(folder.Names() == Names{"sub"});
}
