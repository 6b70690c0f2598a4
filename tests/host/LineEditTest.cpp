// The parts of the line editor that need no terminal; tests/commandline has one.
#include "host/lineedit/LineHistory.h"
#include "host/lineedit/LineLayout.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>

using namespace host;

namespace {

Key Letter(const char* text) {
  return {KeyKind::kText, text};
}

LineBuffer LineOf(std::initializer_list<Key> keys) {
  LineBuffer line;
  for (const Key& key : keys)
    line.Apply(key);
  return line;
}

constexpr const char* kHistory = "line-history.txt";

std::string Lines(std::size_t first, std::size_t count) {
  std::string text;
  for (std::size_t i = first; i < first + count; ++i)
    text += std::to_string(i) + "\n";
  return text;
}

} // namespace

TEST_CASE("keys edit by characters and words, whatever bytes they take") {
  const Key left{KeyKind::kLeft, {}}, word{KeyKind::kDeleteWord, {}};
  CHECK(LineOf({Letter("a"), Letter("\xC3\xA4"), Letter("b"), left, left, {KeyKind::kDelete, {}}}).Text() == "ab");
  CHECK(LineOf({Letter("\xC3\xA4"), Letter("\xE2\x82\xAC"), {KeyKind::kBackspace, {}}}).Text() == "\xC3\xA4");
  CHECK(LineOf({{KeyKind::kBackspace, {}}, {KeyKind::kDelete, {}}, left, {KeyKind::kRight, {}}}).Text().empty());
  LineBuffer line;
  line.Set("set out 12");
  line.Apply({KeyKind::kWordLeft, {}});
  CHECK(line.Cursor() == 8);
  line.Apply(word);
  CHECK(line.Text() == "set 12");
  line.Apply({KeyKind::kWordRight, {}});
  line.Apply({KeyKind::kDeleteToStart, {}});
  CHECK(line.Text().empty());
  line.Set("ab");
  line.Apply({KeyKind::kHome, {}});
  line.Apply({KeyKind::kDeleteToEnd, {}});
  CHECK(line.Text().empty());
  CHECK_FALSE(line.Apply({KeyKind::kUp, {}}));
}

TEST_CASE("a row shows the part around the cursor") {
  LineBuffer line;
  line.Set("0123456789");
  LineLayout layout = LayLine("> ", line, 40);
  CHECK(layout.shown == "> 0123456789");
  CHECK(layout.columns == 12);
  layout = LayLine("> ", line, 8); // the end, and a place for the cursor behind it
  CHECK(layout.shown == "> 56789");
  CHECK(layout.beforeCursor == layout.shown);
  line.Apply({KeyKind::kHome, {}});
  layout = LayLine("> ", line, 8);
  CHECK(layout.shown == "> 012345");
  CHECK(layout.beforeCursor == "> ");
  CHECK(LayLine("the device asks: ", line, 8).shown == "ks: 0123"); // its end, in half of the row
  line.Set("a\t\xC3\xA4");
  CHECK(LayLine("", line, 8).shown == "a \xC3\xA4");
  for (std::size_t columns = 0; columns < 6; ++columns) // no row is too small
    CHECK(LayLine("prefix", line, columns).columns <= std::max<std::size_t>(columns, 2));
}

TEST_CASE("a history goes back and forth, and keeps what was typed meanwhile") {
  LineHistory history({});
  CHECK(history.StepBack("x") == nullptr);
  for (const char* line : {"one", "two", "two", ""})
    history.Add(line);
  CHECK(*history.StepBack("thr") == "two");
  CHECK(*history.StepBack("two!") == "one");
  CHECK(history.StepBack("one") == nullptr);
  CHECK(*history.StepForward("one") == "two!");
  CHECK(*history.StepForward("two!") == "thr");
  CHECK(history.StepForward("thr") == nullptr);
  history.Add("three");
  CHECK(*history.StepBack("") == "three");
  CHECK(*history.StepBack("three") == "two");
}

TEST_CASE("the file of a history is bounded and can be shared") {
  std::ofstream(kHistory, std::ios::binary) << Lines(0, LineHistory::kMostLines + 10);
  LineHistory history(kHistory), other(kHistory);
  history.Add("mine");
  other.Add("other's");
  std::ifstream file(kHistory, std::ios::binary);
  const std::string text((std::istreambuf_iterator<char>(file)), {});
  CHECK(text == Lines(10, LineHistory::kMostLines) + "mine\nother's\n");
  std::string current;
  std::size_t steps = 0;
  for (; const std::string* line = history.StepBack(current); ++steps)
    current = *line;
  CHECK(steps == LineHistory::kMostLines);
  file.close();
  std::remove(kHistory);
}
