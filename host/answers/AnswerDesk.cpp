#include "host/answers/AnswerDesk.h"

#include "host/support/Text.h"

#include <utility>

namespace host {
namespace {

// What somebody who writes answers must know of a question.
std::string Described(const Question& question) {
  std::string text = Quoted(question.caption);
  switch (question.kind) {
  case QuestionKind::kBox:
    return text + " (a box: OK)";
  case QuestionKind::kEntry:
    return question.limits.empty() ? text : text + " (a number, " + question.limits + ")";
  case QuestionKind::kChoice:
    break;
  }
  text += " (one of ";
  for (const std::string& item : question.items)
    text.append(&item == &question.items.front() ? "" : ", ").append(item);
  return text + ")";
}

} // namespace

void AnswerDesk::BeginRun(std::function<void()> stop, std::function<void(const AnsweredQuestion&)> noted) {
  m_stop = std::move(stop);
  m_noted = std::move(noted);
  m_failure = Failure::kNone;
  m_failureText.clear();
}

bool AnswerDesk::Open(Question question) {
  m_question = std::move(question);
  m_asked = Clock::now();
  return m_failure == Failure::kNone;
}

const FileAnswer* AnswerDesk::FileAnswerToIt() {
  const FileAnswer* const answer = m_answers->Next(m_question.caption);
  if (!answer) {
    const std::size_t count = m_answers->CountOf(m_question.caption);
    Fail(Failure::kAnswersDoNotFit, m_answers->Path() + ": no " + (count != 0 ? "further " : "") + "answer to " +
                                        Described(m_question) +
                                        (count != 0 ? ", which has " + std::to_string(count) : std::string()));
  }
  return answer;
}

void AnswerDesk::Close(std::optional<std::string> answer, const FileAnswer* from) {
  m_noted({m_question, std::move(answer), from ? m_answers->PlaceOf(*from) : "user", m_asked, Clock::now()});
}

void AnswerDesk::Refuse(const FileAnswer& answer, const std::string& complaint) {
  Fail(Failure::kAnswersDoNotFit, m_answers->PlaceOf(answer) + ": " + Described(m_question) + ": " + complaint);
}

void AnswerDesk::FindNobody(const std::string& why) {
  const bool isKnown = !m_question.caption.empty() || !m_question.prompt.empty();
  Fail(Failure::kNobodyThere, "nobody is there to answer" + (isKnown ? " " + Described(m_question) : "") + ": " + why);
}

void AnswerDesk::Fail(Failure failure, std::string text) {
  m_failure = failure;
  m_failureText = std::move(text);
  m_stop();
}

} // namespace host
