// What only holds where drive Z: is the root of the file system.
#include "platform/Platform.h"
#include "tests/support/TemporaryFolder.h"

#include <doctest/doctest.h>

#include <sys/stat.h>

using platform::File;

TEST_CASE("the longest path counts when it is resolved") {
  const std::string longest = "Z:\\" + std::string(platform::kMaxPath - 3, 'x');
  CHECK(platform::FullPath(longest) == longest);
  CHECK_FALSE(platform::FullPath(longest + "x"));
  CHECK_FALSE(platform::FullPath(""));
  CHECK(platform::FullPath(longest + "\\..\\a") == "Z:\\a");
}

TEST_CASE("only regular files open, and nothing blocks") {
  const TemporaryFolder folder;
  REQUIRE(mkfifo((folder.SystemPath() / "pipe").c_str(), 0600) == 0);
  for (const std::string& path : {folder.PathOf("pipe"), std::string("/dev/zero"), std::string("/dev/null")}) {
    CAPTURE(path);
    CHECK_FALSE(File::Open(path, File::Mode::kRead));
    CHECK_FALSE(File::Open(path, File::Mode::kUpdate));
    CHECK_FALSE(File::Open(path, File::Mode::kCreate));
  }
  folder.Write("file", "x");
  CHECK_FALSE(platform::MoveFileOver(folder.PathOf("file"), folder.PathOf("pipe")));
  CHECK(folder.Read("file") == "x");
}
