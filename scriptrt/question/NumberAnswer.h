// What the user types as the answer to a number question; the same rules and words in windows and on the terminal.
#pragma once

#include "scriptrt/question/Prompter.h"

// A value of the question's type as the user sees it, decimal.
std::string NumberForPrompt(const Prompter::NumberQuestion& question, std::uint64_t value);
// "10 to 20"; empty when every number of the type will do.
std::string LimitsForPrompt(const Prompter::NumberQuestion& question);

struct NumberAnswer {
  std::optional<std::uint64_t> value; // within the limits
  std::string complaint;              // what is wrong with the number; empty when no number stands there
};
// Reads the number at the start of the text, as the C library's scan formats do.
NumberAnswer ReadNumberAnswer(const Prompter::NumberQuestion& question, const std::string& text);
