// Answers a script's questions at the host's desk: from the file of `--answers`, or by asking a person.
#pragma once

#include "host/answers/AnswerDesk.h"
#include "scriptrt/question/Prompter.h"

#include <functional>

class AnsweringPrompter : public Prompter {
public:
  // `person` must outlive this one. `isDeserted` tells, after the person gave no answer, that nobody is there.
  AnsweringPrompter(Prompter& person, std::function<bool()> isDeserted)
      : m_person(person), m_isDeserted(std::move(isDeserted)) {}
  // Null: every question goes to the person. The desk must outlive the runs.
  void UseDesk(host::AnswerDesk* desk) { m_desk = desk; }

  void ShowMessage(const std::string& caption, const std::string& text) override;
  std::optional<std::uint64_t> AskNumber(const NumberQuestion& question) override;
  std::optional<std::string> AskText(const std::string& caption, const std::string& prompt,
                                     const std::string& initial) override;
  std::optional<std::size_t> AskItem(const std::string& caption, const std::string& prompt,
                                     const std::vector<std::string>& items, std::uint64_t initial) override;

private:
  // An answer out of the file's text, or what the window would say against it.
  template <class Value>
  using Reading = std::function<std::optional<Value>(const host::FileAnswer&, std::string& complaint)>;

  template <class Value>
  std::optional<Value> Answer(host::Question question, const Reading<Value>& read,
                              const std::function<std::optional<Value>()>& ask,
                              const std::function<std::string(const Value&)>& show);

  Prompter& m_person;
  std::function<bool()> m_isDeserted;
  host::AnswerDesk* m_desk = nullptr;
};
