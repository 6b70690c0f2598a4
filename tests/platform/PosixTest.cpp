// What only holds where drive Z: is the root of the file system.
#include "platform/Platform.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/posix/OrdinaryUser.h"

#include <doctest/doctest.h>

#include <sys/stat.h>

using platform::File;

TEST_CASE("the longest path counts when it is resolved") {
  const std::string longest = "Z:\\" + std::string(platform::kMaxPath - 3, 'x');
  CHECK(platform::FullPath(longest) == longest);
  CHECK_FALSE(platform::FullPath(longest + "x"));
  CHECK_FALSE(platform::FullPath(""));
  CHECK(platform::FullPath(longest + "\\..\\a") == "Z:\\a");
  CHECK_FALSE(platform::FullPath(std::string("a\0b", 3)));
  CHECK(platform::FullPath("z:\\a") == "z:\\a");
  CHECK(platform::FullPath("a:") == "a:\\");
}

TEST_CASE("descriptors are given back") {
  const TemporaryFolder folder;
  folder.Write("file", "x");
  const auto held = [] {
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return std::distance(begin(descriptors), end(descriptors));
  };
  const auto before = held();
  {
    const platform::StopEvent event;
    const auto file = File::Open(folder.PathOf("file"), File::Mode::kRead);
    CHECK(held() == before + 2);
  }
  CHECK_FALSE(File::Open(folder.Path(), File::Mode::kRead)); // opened, and then seen to be no file
  platform::WriteWholeFile(folder.PathOf("other"), "x");
  CHECK(held() == before);
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
  for (const char* path : {"", "Q:\\dev\\null", "\\\\srv\\file"})
    CHECK_FALSE(File::Open(path, File::Mode::kRead));
  CHECK_FALSE(platform::WriteWholeFile(folder.PathOf("pipe"), "x"));
  CHECK(folder.Names() == std::vector<std::string>{"pipe"});
}

TEST_CASE("as many links are followed as the system follows") {
  const TemporaryFolder folder;
  folder.Write("0", "x");
  for (int links = 1; links < 50; ++links) {
    CAPTURE(links);
    std::filesystem::create_symlink(std::to_string(links - 1), folder.SystemPath() / std::to_string(links));
    const std::string path = folder.PathOf(std::to_string(links));
    const bool opens = static_cast<bool>(File::Open(path, File::Mode::kRead));
    CHECK(platform::WriteWholeFile(path, "y") == opens);
  }
}

TEST_CASE("a link that leads nowhere yet, one that never ends, and a file that may not be written") {
  const TemporaryFolder folder;
  const auto& path = folder.SystemPath();
  std::filesystem::create_symlink("new", path / "link");
  CHECK(platform::WriteWholeFile(folder.PathOf("link"), "x"));
  CHECK(std::filesystem::is_symlink(path / "link"));
  CHECK(folder.Read("new") == "x");

  std::filesystem::create_symlink("loop", path / "loop");
  CHECK_FALSE(platform::WriteWholeFile(folder.PathOf("loop"), "x"));
  chmod(path.c_str(), 0777);
  chmod((path / "new").c_str(), 0444);
  {
    const OrdinaryUser user;
    CHECK_FALSE(platform::WriteWholeFile(folder.PathOf("new"), "y"));
  }
  CHECK(folder.Read("new") == "x");
  CHECK(folder.Names() == std::vector<std::string>{"link", "loop", "new"});
}

TEST_CASE("the longest current folder") {
  const TemporaryFolder folder;
  const auto before = std::filesystem::current_path();
  for (const std::size_t tooMany : {0, 1}) {
    const std::size_t used = std::string("Z:").size() + folder.SystemPath().string().size() + 1;
    const auto path = folder.SystemPath() / std::string(platform::kMaxPath - used + tooMany, 'x');
    std::filesystem::create_directory(path);
    std::filesystem::current_path(path);
    CHECK(platform::CurrentFolder().size() == (tooMany ? 0 : platform::kMaxPath));
  }
  std::filesystem::current_path(before);
}
