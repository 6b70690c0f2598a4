#include "util/JobFile.h"
#include "tests/support/Cases.h"
#include "tests/support/TemporaryFolder.h"

#include <doctest/doctest.h>

#include <sstream>

using Entries = std::vector<TFILEENTRY>;

namespace {

// "PATH ID TYPE MODE;" each, the folder written as "@".
std::string Listed(const Entries& entries, const std::string& folder) {
  std::ostringstream out;
  for (const TFILEENTRY& entry : entries) {
    const bool inFolder = entry.path.starts_with(folder);
    out << (inFolder ? "@" : "") << entry.path.substr(inFolder ? folder.size() : 0);
    out << ' ' << +entry.fileId << ' ' << +entry.fileType << ' ' << entry.fileMode << ';';
  }
  return out.str();
}

// A job of one file.
int Save(const std::string& path, const std::string& file) {
  Entries entries{{file, 0, 1, 2, 0}};
  return SaveJobFile(path.c_str(), &entries);
}

} // namespace

TEST_CASE("a job file is read byte by byte as its format says, and written so that paths are found again") {
  const TemporaryFolder folder;
  const std::string job = folder.PathOf("list.dcj");
  CheckCases("util/JobFile.cases", "a job file is read", [&](const Words& given) -> Words {
    folder.Write("list.dcj", given[0]);
    Entries entries{{"old", 0, 9, 9, 9}};
    CHECK(LoadJobFile(job.c_str(), &entries) == 1);
    return {Listed(entries, folder.Path())};
  });
  CheckCases("util/JobFile.cases", "a path is written", [&](const Words& given) -> Words {
    const bool inFolder = given[0].starts_with('@');
    CHECK(Save(job, inFolder ? folder.Path() + given[0].substr(1) : given[0]) == 1);
    const std::string text = folder.Read("list.dcj");
    CHECK(text.ends_with("\t1\t2\tnormal\n"));
    const std::string path = text.substr(0, text.find('\t'));
    return {path.starts_with(folder.Path()) ? "@" + path.substr(folder.Path().size()) : path};
  });
}

TEST_CASE("a failed load leaves the list alone") {
  const TemporaryFolder folder;
  for (const std::string& path : {folder.PathOf("missing.dcj"), folder.Path(), std::string()}) {
    CAPTURE(path);
    Entries entries{{"old", 0, 9, 8, 7}};
    CHECK(LoadJobFile(path.c_str(), &entries) == 0);
    CHECK(Listed(entries, folder.Path()) == "old 9 8 7;");
  }
}

TEST_CASE("saving touches no file but its own") {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.SystemPath() / "sub");
  folder.Write("list.dcj", "before");
  for (int number = 0; number < 30; ++number)
    folder.Write("~" + std::to_string(number), "somebody's");
  const std::vector<std::string> before = folder.Names();
  CHECK(Save(folder.PathOf("list.dcj"), folder.PathOf("a")) == 1);
  CHECK(folder.Read("list.dcj") == "a\t1\t2\tnormal\n");
  CHECK(Save(folder.PathOf("sub"), folder.PathOf("a")) == 0);
  CHECK(Save(folder.PathOf("missing\\list.dcj"), "a") == 0);
  CHECK(folder.Names() == before);
}

TEST_CASE("the longest path that a file can have is saved to") {
  constexpr std::size_t kLongest = 259;
  const TemporaryFolder folder;
  const std::string name = std::string(kLongest - folder.Path().size() - 5, 'x') + ".dcj";
  REQUIRE(folder.PathOf(name).size() == kLongest);
  CHECK(Save(folder.PathOf(name), folder.PathOf("a")) == 1);
  CHECK(folder.Names() == std::vector<std::string>{name});
}
