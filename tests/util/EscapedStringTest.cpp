#include "util/EscapedString.h"

#include <doctest/doctest.h>

namespace {

struct Parsed {
  std::string bytes;
  std::size_t endPos = 12345;
  std::string error = "untouched";
  int ok = 12345;
};

Parsed Parse(const std::string& text, char terminator, std::size_t length) {
  Parsed parsed;
  parsed.bytes = ParseString(text.c_str(), length, terminator, &parsed.endPos, &parsed.error, &parsed.ok);
  return parsed;
}

struct Row {
  std::string text;
  char terminator;
  std::string outcome; // the bytes, or the message of a failure
  std::size_t endPos;
};

} // namespace

TEST_CASE("texts and escapes that are read") {
  const Row rows[] = {
      {"", 0, "", 0},
      {"abc\"rest", '"', "abc", 4},
      {std::string("a\0b\"", 4), '"', std::string("a\0b", 3), 4},
      {std::string("a\0b", 3), 0, "a", 2}, // the terminator, whichever it is, ends the text
      {"\xE4\xFF\x01", 0, "\xE4\xFF\x01", 3},
      {R"(\"\\\n\t\r.)", 0, "\"\\\n\t\r.", 11},
      {R"(\0\1\2\3\4\5\6\7\8\9.)", 0, std::string("\0\1\2\3\4\5\6\7\10\11.", 11), 21},
      {R"(\A\B\C\D\E\F.)", 0, "\x0A\x0B\x0C\x0D\x0E\x0F.", 13},
      {R"(\4g.)", 0, "\4g.", 4}, // one digit only
      {R"(a\"b")", '"', "a\"b", 5},
      {R"(A\(65)\(x41)\(b1000001).)", 0, "AAAA.", 24},
      {R"(\(255)\(xFf)\(Xff)\(B11111111).)", 0, "\xFF\xFF\xFF\xFF.", 31},
      {R"(\(0000255)\(0).)", 0, std::string("\xFF\0.", 3), 15},
      {R"(\(x)\(b).)", 0, std::string("\0\0.", 3), 9}, // the letter counts as a digit
      // Behind an escape that comes last the closing zero byte is read
      {R"(x\n)", 0, "x\n", 4},
      {R"(\(65))", 0, "A", 6},
  };
  for (const Row& row : rows) {
    CAPTURE(row.text);
    const Parsed parsed = Parse(row.text, row.terminator, row.text.size());
    CHECK(parsed.ok == 1);
    CHECK(parsed.bytes == row.outcome);
    CHECK(parsed.error == "");
    CHECK(parsed.endPos == row.endPos);
  }
}

TEST_CASE("texts and escapes that are wrong") {
  const Row rows[] = {
      {"", '"', "String not terminated.", 0},
      {"abc", '"', "String not terminated.", 3},
      {R"(x\n)", '"', "String not terminated.", 4},
      {"ab\nc\"", '"', "Unallowed line break inside string.", 3},
      {"a\rb", 0, "Unallowed line break inside string.", 2},
      {R"(\q)", 0, R"(Invalid ESC sequence "\q".)", 2},
      {R"(\).)", 0, "Invalid ESC sequence \"\\)\".", 2},
      {R"(ab\)", 0, "Incomplete ESC sequence at end of input.", 3},
      {R"(\(256).)", 0, "Number too big in numerical ESC sequence", 5},
      {R"(\(x100).)", 0, "Number too big in numerical ESC sequence", 6},
      {R"(\()", 0, "Incomplete ESC sequence at end of input.", 2},
      {R"(\(1x).)", 0, R"(Invalid char in numerical ESC sequence "x".)", 4},
      {R"(\().)", 0, R"(Invalid number in ESC sequence "0".)", 3},
  };
  for (const Row& row : rows) {
    CAPTURE(row.text);
    const Parsed parsed = Parse(row.text, row.terminator, row.text.size());
    CHECK(parsed.ok == 0);
    CHECK(parsed.bytes == "");
    CHECK(parsed.error == row.outcome);
    CHECK(parsed.endPos == row.endPos);
  }
}

TEST_CASE("length limits what is read, the largest one does not") {
  const Parsed cut = Parse("abc\"rest", '"', 2);
  CHECK(cut.error == "String not terminated.");
  CHECK(cut.endPos == 2);
  CHECK(Parse("a\\(65)\"", '"', 4).error == "Incomplete ESC sequence at end of input.");
  const Parsed unlimited = Parse("a\\n\\(65)\"rest", '"', static_cast<std::size_t>(-1));
  CHECK(unlimited.bytes == "a\nA");
  CHECK(unlimited.endPos == 9);
}
