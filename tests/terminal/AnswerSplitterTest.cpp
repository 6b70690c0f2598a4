#include "terminal/AnswerSplitter.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

// What somebody has on the screen who follows the splitter.
class Screen {
public:
  explicit Screen(std::size_t keep) : splitter(keep), m_keep(keep) {}

  void Show() {
    AnswerSplitter::Lines taken = splitter.TakeLines();
    if (taken.replaceLast && !lines.empty())
      lines.pop_back();
    added += taken.lines.size();
    for (std::string& line : taken.lines)
      lines.push_back(std::move(line));
    while (lines.size() > m_keep)
      lines.erase(lines.begin());
  }

  AnswerSplitter splitter;
  std::vector<std::string> lines;
  std::size_t added = 0;

private:
  std::size_t m_keep;
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

// All texts of `length` of ordinary bytes, CRs and LFs.
std::vector<std::string> TextsOf(std::size_t length) {
  std::vector<std::string> texts = {""};
  for (std::size_t i = 0; i < length; ++i) {
    std::vector<std::string> longer;
    for (const std::string& text : texts)
      for (const char byte : {'a', '\r', '\n'})
        longer.push_back(text + byte);
    texts = std::move(longer);
  }
  return texts;
}

} // namespace

TEST_CASE("lines are the same wherever the bytes are cut and whenever they are shown") {
  constexpr std::size_t kLength = 6;
  for (const std::string& text : TextsOf(kLength)) {
    const std::vector<std::string> expected = LinesOf(text);
    // Bit i of `cuts`: the bytes are cut behind byte i; then every second time, the lines are shown as well.
    for (unsigned cuts = 0; cuts < 1U << kLength; ++cuts) {
      Screen screen(100);
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

TEST_CASE("only the last lines of a batch are kept") {
  for (const std::size_t before : {0, 1, 4, 5, 9}) {
    for (const std::size_t count : {0, 1, 4, 5, 6, 50}) {
      for (const char* tail : {"", "tail"}) {
        CAPTURE(before);
        CAPTURE(count);
        CAPTURE(tail);
        Screen screen(5);
        std::string text;
        const auto feed = [&](const std::string& bytes) {
          screen.splitter.Feed(bytes);
          text += bytes;
        };
        for (std::size_t i = 0; i < before; ++i)
          feed(std::to_string(i) + "\n");
        feed("unfinished");
        screen.Show();
        screen.added = 0;
        for (std::size_t i = 0; i < count; ++i)
          feed(std::to_string(i) + "\n");
        feed(tail);
        screen.Show();
        std::vector<std::string> expected = LinesOf(text);
        expected.erase(expected.begin(),
                       expected.end() - static_cast<std::ptrdiff_t>(std::min<std::size_t>(5, expected.size())));
        CHECK(screen.lines == expected);
        CHECK(screen.added <= 5);
      }
    }
  }
}

TEST_CASE("every byte but CR and LF is kept, zero as a blank") {
  std::string bytes, expected;
  for (int byte = 0; byte < 256; ++byte) {
    if (byte == '\r' || byte == '\n')
      continue;
    bytes += static_cast<char>(byte);
    expected += byte == 0 ? ' ' : static_cast<char>(byte);
  }
  Screen screen(10);
  screen.splitter.Feed(bytes);
  screen.Show();
  CHECK(screen.lines == std::vector{expected});
}

TEST_CASE("a line without an end is one line up to a size, and goes on in smaller ones") {
  constexpr std::size_t kLongest = AnswerSplitter::kLongestLine, kNext = AnswerSplitter::kLongestContinuation;
  Screen screen(100);
  const auto feed = [&](std::size_t count) {
    screen.splitter.Feed(std::string(count, 'x'));
    screen.Show();
  };
  const auto sizes = [&] {
    std::vector<std::size_t> all;
    for (const std::string& line : screen.lines)
      all.push_back(line.size());
    return all;
  };
  for (int i = 0; i < 4; ++i)
    feed(kLongest / 4);
  CHECK(sizes() == std::vector{kLongest});
  SUBCASE("its end comes just then") {
    screen.splitter.Feed("\r\n");
    feed(1);
    CHECK(sizes() == std::vector<std::size_t>{kLongest, 1});
  }
  SUBCASE("it goes on") {
    feed(2 * kNext + 1);
    CHECK(sizes() == std::vector<std::size_t>{kLongest, kNext, kNext, 1});
    screen.splitter.Feed("\n");
    feed(kLongest + 1);
    CHECK(sizes() == std::vector<std::size_t>{kLongest, kNext, kNext, 1, kLongest, 1});
  }
}

TEST_CASE("after forgetting, the rest of a line is a line of its own") {
  Screen screen(10);
  SUBCASE("shown before") {
    screen.splitter.Feed("shown");
    screen.Show();
    screen.splitter.ForgetUnfinished();
    screen.splitter.Feed(" rest\n");
    screen.Show();
    CHECK(screen.lines == std::vector<std::string>{"shown", " rest"});
  }
  SUBCASE("behind a CR, whose LF is still to come") {
    screen.splitter.Feed("line\r");
    screen.Show();
    screen.splitter.ForgetUnfinished();
    screen.splitter.Feed("\nnext");
    screen.Show();
    CHECK(screen.lines == std::vector<std::string>{"line", "next"});
  }
}
