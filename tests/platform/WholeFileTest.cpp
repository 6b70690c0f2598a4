// Replacing a file as a whole.
#include "platform/Platform.h"
#include "tests/support/TemporaryFolder.h"

#include <doctest/doctest.h>

#include <filesystem>

namespace fs = std::filesystem;

TEST_CASE("what interrupted programs have left is passed over and stays") {
  const TemporaryFolder folder;
  for (int number = 0; number < 30; ++number)
    folder.Write("~" + std::to_string(number), "somebody's");
  const std::vector<std::string> before = folder.Names();
  CHECK(platform::WriteWholeFile(folder.PathOf("~7"), "new"));
  CHECK(folder.Read("~7") == "new");
  CHECK(folder.Read("~0") == "somebody's");
  CHECK(folder.Names() == before);
}

TEST_CASE("access rights of a replaced file stay, and what is write-protected stays whole") {
  const TemporaryFolder folder;
  folder.Write("file", "old");
  const fs::path path = folder.SystemPath() / "file";
  constexpr auto kShared = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read |
                           fs::perms::group_write | fs::perms::others_read | fs::perms::others_write;
  constexpr auto kPrivate = fs::perms::owner_read | fs::perms::owner_write;
  for (const fs::perms rights : {kShared, kPrivate}) {
    fs::permissions(path, rights);
    const fs::perms before = fs::status(path).permissions();
    CHECK(platform::WriteWholeFile(folder.PathOf("file"), "new"));
    CHECK(fs::status(path).permissions() == before);
    CHECK(folder.Read("file") == "new");
  }
}

TEST_CASE("a link's file is written, not the link") {
  const TemporaryFolder folder;
  fs::create_directory(folder.SystemPath() / "sub");
  folder.Write("sub/file", "old");
  std::error_code refused; // Windows asks for a privilege
  fs::create_symlink(fs::path("sub") / "file", folder.SystemPath() / "link", refused);
  fs::create_symlink("link", folder.SystemPath() / "second", refused);
  if (refused)
    return;
  CHECK(platform::WriteWholeFile(folder.PathOf("second"), "new"));
  CHECK(fs::is_symlink(folder.SystemPath() / "second"));
  CHECK(fs::is_symlink(folder.SystemPath() / "link"));
  CHECK(folder.Read("sub/file") == "new");
}
