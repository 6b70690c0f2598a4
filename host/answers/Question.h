// What a script asks the person at the bench, and what became of it, whichever way it was asked.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace host {

enum class QuestionKind { kBox, kEntry, kChoice };

struct Question {
  QuestionKind kind = QuestionKind::kBox;
  std::string caption;
  std::string prompt;  // of a box its text
  std::string initial; // what is offered, as the user sees it; empty: nothing
  std::string limits;  // of a number, "10 to 20"; empty: there are none, or only the window knows
  std::vector<std::string> items;
};

struct AnsweredQuestion {
  Question question;
  std::optional<std::string> answer; // as the user would have given it; nothing: Cancel
  std::string by;                    // "user", or where the answer is written: "answers.txt:3"
  std::chrono::steady_clock::time_point asked;
  std::chrono::steady_clock::time_point answered;
};

} // namespace host
