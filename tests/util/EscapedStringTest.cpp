#include "util/EscapedString.h"
#include "tests/support/Cases.h"

#include <doctest/doctest.h>

namespace {

Words Parse(const Words& given, int expectedOk) {
  const std::string& text = given[0];
  const std::size_t length = given[2].empty() ? text.size() : static_cast<std::size_t>(std::stoll(given[2]));
  std::size_t endPos = 12345;
  std::string error = "untouched";
  int ok = 12345;
  const std::string bytes = ParseString(text.c_str(), length, given[1][0], &endPos, &error, &ok);
  CHECK(ok == expectedOk);
  CHECK((ok == 1 ? error : bytes).empty());
  return {ok == 1 ? bytes : error, std::to_string(endPos)};
}

} // namespace

TEST_CASE("escaped strings") {
  for (const int ok : {1, 0}) {
    const char* const section = ok == 1 ? "texts and escapes that are read" : "texts and escapes that are wrong";
    CheckCases("util/EscapedString.cases", section, [ok](const Words& given) { return Parse(given, ok); });
  }
}
