#include "terminal/TerminalHistory.h"

#include <doctest/doctest.h>

namespace {

// Takes the steps of a text like "<<>" one after the other; the texts that they come to.
std::string Walk(TerminalHistory& history, const std::string& steps) {
  std::string seen;
  for (const char step : steps) {
    const TerminalHistoryEntry* const entry = step == '<' ? history.StepBack() : history.StepForward();
    seen += entry ? entry->text + (entry->appendCr ? "+" : "") : "-";
  }
  return seen;
}

} // namespace

TEST_CASE("the history goes around in both directions") {
  TerminalHistory history;
  CHECK(Walk(history, "<>") == "--");
  history.Add({"a"});
  CHECK(Walk(history, "<<>>") == "aaaa");
  history.Add({"b"});
  history.Add({"c"});
  CHECK(Walk(history, "<<<<") == "cbac");
  CHECK(Walk(history, ">>>>") == "abca");
  history.Add({"d"}); // the position is behind the last one again
  CHECK(Walk(history, ">>") == "ab");
}

TEST_CASE("the history keeps no repetition of the last line, unless it was sent differently") {
  TerminalHistory history;
  history.Add({"a"});
  history.Add({"a"});
  history.Add({"b"});
  history.Add({"a"});
  history.Add({"a", true});
  CHECK(Walk(history, "<<<<<") == "a+abaa+");
  history.Add({"a", true}); // adds nothing, but begins anew
  CHECK(Walk(history, "<") == "a+");
}
