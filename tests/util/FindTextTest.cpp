#include "util/FindText.h"

#include <doctest/doctest.h>

#include <string>

TEST_CASE("texts are found where they first begin") {
  CHECK(FindText("abcabc", "c", 3) == 5);
  CHECK(FindText("abc", "x", 0) == std::string::npos);
  CHECK(FindText("abc", "", 3) == 3);
  CHECK(FindText("abc", "", 4) == std::string::npos);
  CHECK(FindText("abc", "abcd", 0) == std::string::npos);
}

TEST_CASE("repetitive texts give what the standard library's search gives, in linear time") {
  unsigned state = 1;
  const auto random = [&](unsigned below) { return (state = state * 1664525U + 1013904223U) / 65536U % below; };
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    std::string searched;
    for (unsigned i = random(1200); i > 0; --i)
      text += random(40) == 0 ? 'b' : 'a';
    for (unsigned i = 1 + random(60); i > 0; --i)
      searched += random(30) == 0 ? 'b' : 'a';
    const std::size_t start = random(100);
    CAPTURE(text);
    CAPTURE(searched);
    REQUIRE(FindText(text, searched, start) == text.find(searched, start));
  }
  // Comparing at each place would take 10^12 steps.
  const std::string many(2000000, 'a');
  CHECK(FindText(many, many.substr(0, 1000000) + 'b', 0) == std::string::npos);
}
