#include "util/Path.h"
#include "util/LastSeparator.h"
#include "util/ScriptPath.h"

#include <doctest/doctest.h>

#include <chrono>
#include <stdexcept>

namespace {

constexpr const char* kOutOfRange = "(out of range)";

struct Joined {
  int ok;
  std::string path;

  bool operator==(const Joined&) const = default;
};

Joined Join(const std::string& folder, const std::string& file) {
  Joined joined{-1, ""};
  try {
    joined.ok = ConcatenatePathAndFile(folder, file, &joined.path);
  } catch (const std::out_of_range& error) {
    CHECK(std::string(error.what()) == "invalid string position");
    joined.path = kOutOfRange;
  }
  return joined;
}

std::string Relative(const std::string& base, const std::string& path) {
  std::string result = "untouched";
  MakeRelativePath(base, path, &result);
  return result;
}

// The rule of the clean-up word by word: scan from the start, remove, scan from the start again.
Joined JoinByTheBook(const std::string& folder, const std::string& file) {
  std::string text = folder + (folder.ends_with('\\') ? "" : "\\") + file;
  for (bool changed = true; changed;) {
    changed = false;
    int state = 0;
    for (std::size_t k = 0; k < text.size() && !changed; ++k) {
      if (text[k] == '.') {
        state = (state + 1) % 3;
        continue;
      }
      const int step = text[k] == '\\' ? state : 0;
      state = 0;
      if (step == 1) {
        if (k < 3)
          return {-1, kOutOfRange};
        text.erase(k - 3, 2);
        changed = true;
      } else if (step == 2) {
        std::size_t parent = k < 4 ? 0 : k - 4;
        while (parent > 0 && text[parent] != '\\')
          --parent;
        if (k < 4 || text.substr(0, k) == text.substr(0, 1) + ":\\..")
          return {0, file};
        text.erase(parent, k - parent);
        changed = true;
      }
    }
  }
  return {1, text};
}

} // namespace

TEST_CASE("the last separator, in a code page with characters of two bytes") {
  // Those of code page 932, in which the katakana So is "\x83\\".
  const auto isLeadByte = [](char byte) {
    const auto value = static_cast<unsigned char>(byte);
    return (value >= 0x81 && value <= 0x9F) || (value >= 0xE0 && value <= 0xFC);
  };
  constexpr std::size_t kNone = std::string_view::npos;
  struct Row {
    std::string path;
    std::size_t separator;
  };
  const Row rows[] = {
      {"", kNone},        {"a.dcs", kNone},         {"C:\\x\\a.dcs", 4},
      {"C:\\x\\", 4},     {"C:\\x\\\x83\\.dcs", 4}, {"C:\\\x83\\\\a.dcs", 5},
      {"C:\\\x83\\", 2},  {"C:\\\x83\x83\\", 5}, // a character whose second byte looks like a first one
      {"C:\\\xB1\\a", 4},                        // one byte, above 127
      {"C:\\x\\\x83", 4},                        // half a character at the end
  };
  for (const Row& row : rows) {
    CAPTURE(row.path);
    CHECK(LastSeparator(row.path, isLeadByte) == row.separator);
  }
}

TEST_CASE("SplitFileName") {
  struct Row {
    std::string path;
    std::string folder;
    std::string file;
  };
  const Row rows[] = {
      {"", "", ""},
      {"a.bin", "", "a.bin"},
      {"C:\\x\\a.bin", "C:\\x", "a.bin"},
      {"C:\\x\\", "C:\\x", "before"}, // names no file: what was there stays
      {"\\", "", "\\"},               // the first character is never a separator
      {"\\a", "", "\\a"},
      {"\\\\srv", "\\", "srv"},
      {"C:/x/a.bin", "", "C:/x/a.bin"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.path);
    std::string folder = "before";
    std::string file = "before";
    SplitFileName(row.path, &folder, &file);
    CHECK(folder == row.folder);
    CHECK(file == row.file);

    SplitFileName(row.path, nullptr, nullptr);
    std::string inPlace = row.path;
    SplitFileName(inPlace, &inPlace, nullptr);
    CHECK(inPlace == row.folder);
  }
}

TEST_CASE("ConcatenatePathAndFile") {
  struct Row {
    std::string folder;
    std::string file;
    int ok;
    std::string path;
  };
  const Row rows[] = {
      {"", "a\\..\\b", 1, "a\\..\\b"},
      {"C:\\jobs", "x.bin", 1, "C:\\jobs\\x.bin"},
      {"C:\\jobs\\", "x.bin", 1, "C:\\jobs\\x.bin"},
      // Climbing above the start
      {"C:\\a", "..\\..\\b", 0, "..\\..\\b"},
      {"C:", "..\\b", 0, "..\\b"},
      {"", "..\\b", 1, "..\\b"},
      // One dot takes the two bytes in front of it, again and again
      {"C:\\a", ".\\b", -1, kOutOfRange},
      {"C:\\jobs", "...a.\\b", 1, "C:\\jobs\\...\\b"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.folder);
    CAPTURE(row.file);
    const Joined joined = Join(row.folder, row.file);
    CHECK(joined.ok == row.ok);
    CHECK(joined.path == row.path);
  }
}

TEST_CASE("cleaning up in one pass gives what starting over gives") {
  constexpr char kAlphabet[] = {'a', '.', '\\', ':'};
  constexpr unsigned kLongest = 7;
  for (const std::string folder : {"C:", "C:\\aa", "\\\\a\\a", "a.a."}) {
    for (unsigned length = 1; length <= kLongest; ++length) {
      for (unsigned number = 0; number < 1u << (2 * length); ++number) {
        std::string file;
        for (unsigned place = 0; place < length; ++place)
          file.push_back(kAlphabet[(number >> (2 * place)) % 4]);
        const Joined joined = Join(folder, file);
        if (joined != JoinByTheBook(folder, file))
          FAIL_CHECK(folder << " and " << file << " give " << joined.path);
      }
    }
  }
}

TEST_CASE("cleaning up takes time in proportion to the length") {
  const auto start = std::chrono::steady_clock::now();
  std::string deep;
  for (int i = 0; i < 300000; ++i)
    deep += "a\\..\\";
  CHECK(Join("C:\\jobs", deep + "x").path == "C:\\jobs\\x");
  CHECK(Join("C:\\jobs", std::string(1000000, 'a') + ".\\b").ok == -1);
  CHECK(Join("C:\\jobs", std::string(1000000, '.') + "\\b").path == "C:\\jobs\\b");
  CHECK(std::chrono::steady_clock::now() - start < std::chrono::seconds(20));
}

TEST_CASE("which paths are absolute") {
  for (const char* path : {"C:", "C:a", "\\\\", "\\\\srv\\a"})
    CHECK_MESSAGE(IsAbsolutePath(path) == 1, path);
  for (const char* path : {"", ":", "a", "\\a", "\\", "ab:"})
    CHECK_MESSAGE(IsAbsolutePath(path) == 0, path);
}

TEST_CASE("capital letters, the German ones too") {
  for (unsigned code = 0; code < 256; ++code) {
    const bool isSmall = (code >= 'a' && code <= 'z') || code == 0xE4 || code == 0xF6 || code == 0xFC;
    CHECK(static_cast<unsigned char>(toUpperGer(static_cast<char>(code))) == code - (isSmall ? 0x20 : 0));
  }
}

TEST_CASE("MakeRelativePath") {
  struct Row {
    std::string base;
    std::string path;
    std::string relative;
  };
  const Row rows[] = {
      {"C:\\jobs", "C:\\jobs\\a.bin", "a.bin"},
      {"C:\\jobs\\sub\\deep", "C:\\bin\\a.bin", "..\\..\\..\\bin\\a.bin"},
      {"C:\\a", "D:\\b", "D:\\b"},
      {"c:\\JOBS", "C:\\jobs\\x.bin", "x.bin"},
      {"C:\\\xE4\xF6\xFC", "C:\\\xC4\xD6\xDC\\x.bin", "x.bin"},
      {"", "C:\\x.bin", "C:\\x.bin"},
      {"jobs", "java", "java"}, // they share letters but no folder
      // A base that is only the beginning of a name counts as the folder
      {"C:\\jobs", "C:\\jobsX\\a.bin", "\\a.bin"},
      {"C:\\jobs\\", "C:\\jobs\\a.bin", ".bin"},
      {"C:\\jobs", "C:\\jobs", ""},
      {"C:\\jobs\\sub", "C:\\jobs", ""}, // a folder around the base has no relative text
  };
  for (const Row& row : rows) {
    CAPTURE(row.base);
    CAPTURE(row.path);
    CHECK(Relative(row.base, row.path) == row.relative);
    std::string inPlace = row.path;
    MakeRelativePath(row.base, inPlace, &inPlace);
    CHECK(inPlace == row.relative);
  }
}

TEST_CASE("a script's names from its base directory") {
  struct Row {
    std::string name;
    std::string path;
    std::string withoutBase; // where there is no base directory
  };
  const Row rows[] = {
      {"", "", ""},
      {"a", "Z:\\dir\\a", ""},
      {"sub/a\\..\\b", "Z:\\dir\\sub/a\\..\\b", ""},
      {"\\", "", ""},
      {"/", "", ""},
      {"\\a", "Z:\\a", "\\a"},
      {"/a/b", "Z:\\a/b", "\\a/b"},
      {"\\:", "Z:\\:", "\\:"},
      {"\\\\srv\\x", "\\\\srv\\x", "\\\\srv\\x"},
      {"//srv/x", "\\\\srv/x", "\\\\srv/x"},
      {"/\\srv", "\\\\srv", "\\\\srv"},
      {"C:a", "C:a", "C:a"},
      {std::string("a\0b", 3), "", ""},
  };
  for (const Row& row : rows) {
    CAPTURE(row.name);
    CHECK(ResolveScriptPath("Z:\\dir", row.name) == row.path);
    CHECK(ResolveScriptPath("", row.name) == row.withoutBase);
  }
}
