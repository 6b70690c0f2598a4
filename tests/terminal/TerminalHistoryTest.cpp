#include "terminal/TerminalHistory.h"

#include <doctest/doctest.h>

#include <initializer_list>

namespace {

std::string Texts(TerminalHistory& history, const std::string& steps) {
  std::string texts;
  for (const char step : steps) {
    const TerminalHistoryEntry* const entry = step == '<' ? history.StepBack() : history.StepForward();
    texts += entry ? entry->text + (entry->appendCr ? "+ " : " ") : "none ";
  }
  return texts;
}

} // namespace

TEST_CASE("going back and forth") {
  struct Case {
    std::initializer_list<TerminalHistoryEntry> added;
    std::string steps;
    std::string texts;
  };
  const Case cases[] = {
      {{}, "<>><", "none none none none "},
      {{{"a", true}}, "<<>>", "a+ a+ a+ a+ "},
      {{{"a", true}, {"a", true}, {"b", false}}, "<<<>", "b a+ b a+ "},
      {{{"a", true}, {"b", true}, {"c", true}}, ">>>>", "a+ b+ c+ a+ "},
      {{{"a", true}, {"a", false}, {"a", true}}, "<<<<", "a+ a a+ a+ "},
      {{{"a", true}, {"ab", true}, {"a", true}}, "><>>", "a+ a+ a+ ab+ "},
      {{{"", true}, {"\xFF", false}}, "<<", "\xFF + "},
  };
  for (const Case& c : cases) {
    TerminalHistory history;
    for (const TerminalHistoryEntry& entry : c.added)
      history.Add(entry);
    CHECK(Texts(history, c.steps) == c.texts);
  }
}

TEST_CASE("sending anything sets the position behind the last entry, a repetition too") {
  TerminalHistory history;
  for (const char* text : {"a", "b", "c"})
    history.Add({text, true});
  CHECK(Texts(history, "<<") == "c+ b+ ");
  history.Add({"c", true});
  CHECK(Texts(history, "<") == "c+ ");
  history.Add({"b", true});
  CHECK(Texts(history, ">") == "a+ ");
}
