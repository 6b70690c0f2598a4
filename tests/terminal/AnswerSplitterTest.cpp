#include "terminal/AnswerSplitter.h"

#include <doctest/doctest.h>

#include <utility>
#include <vector>

namespace {

// What somebody has on the screen who follows the splitter.
class Screen {
public:
  void Show() {
    AnswerSplitter::Lines taken = splitter.TakeLines();
    if (taken.replaceLast && !lines.empty())
      lines.pop_back();
    for (std::string& line : taken.lines)
      lines.push_back(std::move(line));
  }

  AnswerSplitter splitter{100};
  std::vector<std::string> lines;
};

// The rules in their plainest form: the whole text at once.
std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::string line;
  char previous = 0;
  for (const char byte : text) {
    if (byte != '\r' && byte != '\n')
      line += byte;
    else if (previous != '\r')
      lines.push_back(std::exchange(line, {}));
    previous = byte;
  }
  if (!line.empty())
    lines.push_back(line);
  return lines;
}

// The text with that number, of ordinary bytes, CRs and LFs.
std::string TextOf(unsigned number, std::size_t length) {
  std::string text;
  for (; text.size() < length; number /= 3)
    text += "a\r\n"[number % 3];
  return text;
}

} // namespace

TEST_CASE("lines are the same wherever the bytes are cut and whenever they are shown") {
  constexpr std::size_t kLength = 6;
  constexpr unsigned kTexts = 729; // 3 to the 6th
  for (unsigned number = 0; number < kTexts; ++number) {
    const std::string text = TextOf(number, kLength);
    const std::vector<std::string> expected = LinesOf(text);
    // Bit i of `cuts`: the bytes are cut behind byte i; then every second time, the lines are shown as well.
    for (unsigned cuts = 0; cuts < 1U << kLength; ++cuts) {
      Screen screen;
      std::size_t begin = 0;
      for (std::size_t end = 1; end <= kLength; ++end) {
        if ((cuts >> (end - 1) & 1) == 0 && end < kLength)
          continue;
        screen.splitter.Feed(std::string_view(text).substr(begin, end - begin));
        begin = end;
        if (end % 2 == 0)
          screen.Show();
      }
      screen.Show();
      if (screen.lines != expected) {
        CAPTURE(text);
        CAPTURE(cuts);
        CHECK(screen.lines == expected);
        return;
      }
    }
  }
}

TEST_CASE("only the last lines are kept, an unfinished one among them") {
  AnswerSplitter splitter(2);
  splitter.Feed("a\nb\nc\n");
  CHECK(splitter.TakeLines().lines == std::deque<std::string>{"b", "c"});
  splitter.Feed(std::string_view("d\ne\nf\0f", 7));
  const AnswerSplitter::Lines taken = splitter.TakeLines();
  CHECK(taken.lines == std::deque<std::string>{"e", "f f"}); // a zero byte is shown as a blank
  CHECK_FALSE(taken.replaceLast);
}

TEST_CASE("a line without an end goes on in shorter pieces") {
  constexpr std::size_t kFirst = 1 << 20;
  constexpr std::size_t kNext = 1 << 14;
  AnswerSplitter splitter(10);
  std::vector<std::size_t> sizes;
  const auto take = [&] {
    sizes.clear();
    for (const std::string& line : splitter.TakeLines().lines)
      sizes.push_back(line.size());
    return sizes;
  };
  splitter.Feed(std::string(kFirst, 'x'));
  CHECK(take() == std::vector<std::size_t>{kFirst});
  splitter.Feed(std::string(2 * kNext + 1, 'x'));
  CHECK(take() == std::vector<std::size_t>{kFirst, kNext, kNext, 1});
  splitter.Feed("\n" + std::string(kNext + 1, 'x')); // the device ended the line: the next one may be long again
  CHECK(take() == std::vector<std::size_t>{1, kNext + 1});
}

TEST_CASE("what continues a forgotten line is a line of its own") {
  AnswerSplitter splitter(10);
  splitter.Feed(std::string(AnswerSplitter::kLongestLine + 1, 'x'));
  splitter.TakeLines();
  splitter.ForgetUnfinished();
  CHECK(splitter.TakeLines().lines.empty());
  splitter.Feed(std::string(AnswerSplitter::kLongestContinuation + 1, 'y'));
  const AnswerSplitter::Lines taken = splitter.TakeLines();
  CHECK_FALSE(taken.replaceLast);
  REQUIRE(taken.lines.size() == 1);
  CHECK(taken.lines[0].size() == AnswerSplitter::kLongestContinuation + 1);
}
