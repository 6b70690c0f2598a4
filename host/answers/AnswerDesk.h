// Where a run's questions are answered: from the file of `--answers`, or by a person. Whoever shows the questions, on a
// terminal or in windows, comes here first with each, and afterwards with what the person said.
#pragma once

#include "host/answers/AnswerFile.h"
#include "host/answers/Question.h"

#include <functional>
#include <optional>
#include <string>

namespace host {

// Used on the run's thread alone.
class AnswerDesk {
public:
  using Clock = std::chrono::steady_clock;

  // Why a run's questions could not be answered.
  enum class Failure { kNone, kNobodyThere, kAnswersDoNotFit };

  AnswerDesk() = default;
  explicit AnswerDesk(AnswerBook answers) : m_answers(std::move(answers)) {}

  // From now on questions are another run's. `stop` is called when one of them cannot be answered; `noted` for each
  // that was.
  void BeginRun(std::function<void()> stop, std::function<void(const AnsweredQuestion&)> noted);

  // Whether a file answers, and nobody is asked.
  bool HasAnswers() const { return m_answers.has_value(); }
  // To be called first for each question. False: nobody may be asked any more, the answer is Cancel.
  bool Open(Question question);
  const Question& Asked() const { return m_question; }
  // The file's answer to the question; null when it has none: then the run has been stopped.
  const FileAnswer* FileAnswerToIt();
  // It was answered: nothing means Cancel. `from` is the file's answer, null for a person's.
  void Close(std::optional<std::string> answer, const FileAnswer* from = nullptr);
  // The file's answer would be refused by the window; the run is stopped, the answer is Cancel.
  void Refuse(const FileAnswer& answer, const std::string& complaint);
  // There is no way to ask: `why`. As above.
  void FindNobody(const std::string& why);

  Failure Failed() const { return m_failure; }
  // For a person; empty when nothing failed.
  const std::string& FailureText() const { return m_failureText; }
  // Where the file's first answer stands that nobody asked for; empty: all were used.
  std::string FirstUnused() const { return m_answers ? m_answers->FirstUnused() : std::string(); }

private:
  void Fail(Failure failure, std::string text);

  std::optional<AnswerBook> m_answers;
  std::function<void()> m_stop = [] {};
  std::function<void(const AnsweredQuestion&)> m_noted = [](const AnsweredQuestion&) {};
  Question m_question;
  Clock::time_point m_asked;
  Failure m_failure = Failure::kNone;
  std::string m_failureText;
};

} // namespace host
