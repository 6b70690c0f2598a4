#include "util/JobFile.h"
#include "tests/support/TemporaryFolder.h"

#include <doctest/doctest.h>

#include <sstream>

using Entries = std::vector<TFILEENTRY>;

namespace {

TFILEENTRY Entry(std::string path, unsigned fileId, unsigned fileType, std::uint32_t mode) {
  return {std::move(path), 0, static_cast<std::uint8_t>(fileId), static_cast<std::uint8_t>(fileType), mode};
}

// All entries in one line, the folder written as "@".
std::string Listed(const Entries& entries, const std::string& folder) {
  std::ostringstream out;
  for (const TFILEENTRY& entry : entries) {
    const bool inFolder = entry.path.starts_with(folder);
    out << (inFolder ? "@" : "") << entry.path.substr(inFolder ? folder.size() : 0);
    out << ' ' << +entry.fileId << ' ' << +entry.fileType << ' ' << entry.fileMode << '|';
  }
  return out.str();
}

int Save(const std::string& path, Entries entries) {
  return SaveJobFile(path.c_str(), &entries);
}

} // namespace

TEST_CASE("a job file is read byte by byte as its format says") {
  const TemporaryFolder folder;
  struct Row {
    std::string text;
    std::string entries;
  };
  const Row rows[] = {
      {"", ""},
      {"a.bin\t3\t4\tprogram\n", "@\\a.bin 3 4 2|"},
      {"a\t1\t2\tnormal\r\nb\t3\t4\tbit reverse\r\n", "@\\a 1 2 0|@\\b 3 4 1|"},
      // Lines without a tab
      {"a.bin\nb.bin\t3\t4\tprogram\n", "@\\b.bin 3 4 2|"},
      // The last line's end is missing
      {"c.bin\t5\t6\tprogram", "@\\c.bin 5 6 0|"},
      // Columns left out: the first entry's type is 1, later ones have 0
      {"e.bin\t7\nf.bin\t8\n", "@\\e.bin 7 1 0|@\\f.bin 8 0 0|"},
      // Numbers
      {"a\t300\t256\t\n", "@\\a 44 0 0|"},
      {"a\t 12x\tx12\t\n", "@\\a 12 0 0|"},
      {"a\t-1\t+5\t\n", "@\\a 255 5 0|"},
      {"a\t99999999999999999999999\t0x10\t\n", "@\\a 255 0 0|"},
      // Mode words
      {"a\t1\t1\tbit REVERSE\nb\t1\t1\tPROGRAM\nc\t1\t1\tProgram \nd\t1\t1\t2\n",
       "@\\a 1 1 1|@\\b 1 1 2|@\\c 1 1 0|@\\d 1 1 0|"},
      // Paths
      {"C:\\x\\a\t1\t1\t\n\\\\srv\\b\t1\t1\t\n", "C:\\x\\a 1 1 0|\\\\srv\\b 1 1 0|"},
      {"sub\\..\\a\t1\t1\t\n", "@\\a 1 1 0|"},
      {"long.\\b\t1\t1\t\n", "long.\\b 1 1 0|"}, // no path by the rules, and no reason to throw
      {"..\\..\\..\\..\\..\\..\\..\\..\\..\\..\\a\t1\t1\t\n", "..\\..\\..\\..\\..\\..\\..\\..\\..\\..\\a 1 1 0|"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.text);
    folder.Write("list.dcj", row.text);
    Entries entries{Entry("old", 9, 9, 9)};
    CHECK(LoadJobFile(folder.PathOf("list.dcj").c_str(), &entries) == 1);
    CHECK(Listed(entries, folder.Path()) == row.entries);
  }
}

TEST_CASE("a failed load leaves the list alone") {
  const TemporaryFolder folder;
  for (const std::string& path : {folder.PathOf("missing.dcj"), folder.Path(), std::string()}) {
    CAPTURE(path);
    Entries entries{Entry("old", 9, 8, 7)};
    CHECK(LoadJobFile(path.c_str(), &entries) == 0);
    CHECK(Listed(entries, folder.Path()) == "old 9 8 7|");
  }
}

TEST_CASE("saving touches no file but its own") {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.SystemPath() / "sub");
  folder.Write("list.dcj", "before");
  for (int number = 0; number < 30; ++number)
    folder.Write("~" + std::to_string(number), "somebody's");
  const std::vector<std::string> before = folder.Names();
  CHECK(Save(folder.PathOf("list.dcj"), {Entry(folder.PathOf("a"), 1, 2, 0)}) == 1);
  CHECK(folder.Read("list.dcj") == "a\t1\t2\tnormal\n");

  CHECK(Save(folder.PathOf("sub"), {Entry(folder.PathOf("a"), 1, 2, 0)}) == 0);
  CHECK(Save(folder.PathOf("missing\\list.dcj"), {}) == 0);
  CHECK(folder.Names() == before);
}

TEST_CASE("the longest path that a file can have is saved to") {
  constexpr std::size_t kLongest = 259;
  const TemporaryFolder folder;
  const std::string name = std::string(kLongest - folder.Path().size() - 5, 'x') + ".dcj";
  REQUIRE(folder.PathOf(name).size() == kLongest);
  CHECK(Save(folder.PathOf(name), {Entry(folder.PathOf("a"), 1, 2, 0)}) == 1);
  CHECK(folder.Names() == std::vector<std::string>{name});
}

TEST_CASE("a path is written so that it is found again beside the job file") {
  const TemporaryFolder folder;
  struct Row {
    std::string path; // "@": the folder
    std::string written;
  };
  const Row rows[] = {
      {"@\\a.bin", "a.bin"},      {"@\\sub\\a.bin", "sub\\a.bin"},
      {"@2\\a.bin", "@2\\a.bin"}, // its name only begins like the folder's
      {"@\\a.\\b", "@\\a.\\b"},   {"Q:\\a", "Q:\\a"},
      {"a.bin", "a.bin"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.path);
    const auto inFolder = [&](const std::string& text) {
      return text.starts_with('@') ? folder.Path() + text.substr(1) : text;
    };
    CHECK(Save(folder.PathOf("list.dcj"), {Entry(inFolder(row.path), 1, 2, 0)}) == 1);
    CHECK(folder.Read("list.dcj") == inFolder(row.written) + "\t1\t2\tnormal\n");
  }
}
