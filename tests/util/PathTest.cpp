#include "util/Path.h"
#include "tests/support/Cases.h"
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

constexpr const char* kCases = "util/Path.cases";

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
  const auto isLeadByte = [](char byte) {
    const auto value = static_cast<unsigned char>(byte);
    return (value >= 0x81 && value <= 0x9F) || (value >= 0xE0 && value <= 0xFC);
  };
  CheckCases(kCases, "the last separator", [&](const Words& given) -> Words {
    const std::size_t place = LastSeparator(given[0], isLeadByte);
    return {place == std::string_view::npos ? "none" : std::to_string(place)};
  });
}

TEST_CASE("SplitFileName") {
  CheckCases(kCases, "SplitFileName", [](const Words& given) -> Words {
    SplitFileName(given[0], nullptr, nullptr);
    std::string folder = "before";
    std::string file = "before";
    SplitFileName(given[0], &folder, &file);
    std::string inPlace = given[0];
    SplitFileName(inPlace, &inPlace, nullptr);
    CHECK(inPlace == folder);
    return {folder, file};
  });
}

TEST_CASE("ConcatenatePathAndFile") {
  CheckCases(kCases, "ConcatenatePathAndFile", [](const Words& given) -> Words {
    const Joined joined = Join(given[0], given[1]);
    return {std::to_string(joined.ok), joined.path};
  });
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

TEST_CASE("capital letters, the German ones too") {
  for (unsigned code = 0; code < 256; ++code) {
    const bool isSmall = (code >= 'a' && code <= 'z') || code == 0xE4 || code == 0xF6 || code == 0xFC;
    CHECK(static_cast<unsigned char>(toUpperGer(static_cast<char>(code))) == code - (isSmall ? 0x20 : 0));
  }
}

TEST_CASE("MakeRelativePath") {
  CheckCases(kCases, "MakeRelativePath", [](const Words& given) -> Words {
    std::string relative = "untouched";
    MakeRelativePath(given[0], given[1], &relative);
    std::string inPlace = given[1];
    MakeRelativePath(given[0], inPlace, &inPlace);
    CHECK(inPlace == relative);
    return {relative};
  });
}

TEST_CASE("which paths are absolute, and what names in scripts mean") {
  CheckCases(kCases, "IsAbsolutePath",
             [](const Words& given) { return Words{std::to_string(IsAbsolutePath(given[0]))}; });
  CheckCases(kCases, "names in scripts", [](const Words& given) {
    return Words{ResolveScriptPath("Z:\\dir", given[0]), ResolveScriptPath("", given[0])};
  });
}
