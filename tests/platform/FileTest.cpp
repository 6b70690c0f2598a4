#include "platform/Platform.h"
#include "tests/support/TemporaryFolder.h"

#include <doctest/doctest.h>

using platform::File;
using Names = std::vector<std::string>;

namespace {

std::string ReadAll(File& file) {
  std::string bytes(100, '\0');
  bytes.resize(file.Read(bytes.data(), bytes.size()));
  return bytes;
}

} // namespace

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

TEST_CASE("bytes go through unchanged") {
  const TemporaryFolder folder;
  const std::string bytes("a\r\nb\n\0\x1A\xFF", 8);
  auto out = File::Open(folder.PathOf("f"), File::Mode::kCreate);
  REQUIRE(out);
  CHECK(out->Write(bytes.data(), bytes.size()) == bytes.size());
  CHECK(out->Size() == bytes.size());
  CHECK(out->Close());
  CHECK(folder.Read("f") == bytes);

  auto in = File::Open(folder.PathOf("f"), File::Mode::kRead);
  REQUIRE(in);
  CHECK(in->Size() == bytes.size());
  CHECK(ReadAll(*in) == bytes);
  CHECK(in->Seek(6));
  CHECK(ReadAll(*in) == "\x1A\xFF");
  CHECK(in->Seek(2));
  CHECK(in->ReadText(3) == bytes.substr(2, 3));
  CHECK(in->ReadText(1000) == bytes.substr(5));
  CHECK(in->Seek(100));
  CHECK(ReadAll(*in).empty());
  CHECK(in->Close());
}

TEST_CASE("updating changes bytes in place and grows the file") {
  const TemporaryFolder folder;
  folder.Write("f", "0123456");
  auto file = File::Open(folder.PathOf("f"), File::Mode::kUpdate);
  REQUIRE(file);
  CHECK(file->Seek(2));
  CHECK(file->Write("ab", 2) == 2);
  CHECK(file->Seek(9));
  CHECK(file->Write("z", 1) == 1);
  CHECK(file->Size() == 10);
  CHECK(file->Seek(0));
  CHECK(ReadAll(*file) == std::string("01ab456\0\0z", 10));
  CHECK(file->Close());

  auto untouched = File::Open(folder.PathOf("f"), File::Mode::kUpdate);
  REQUIRE(untouched);
  CHECK(untouched->Seek(1000));
  CHECK(untouched->Close());
  CHECK(folder.Read("f").size() == 10);
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
