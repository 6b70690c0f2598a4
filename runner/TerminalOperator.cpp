#include "runner/TerminalOperator.h"

#include "frame/contract/OndDeviceClient.h"
#include "scriptrt/question/NumberAnswer.h"

#include <iostream>

namespace {

// Nothing at the end of input.
std::optional<std::string> ReadLine() {
  std::string line;
  if (!std::getline(std::cin, line)) {
    std::cerr << '\n';
    return std::nullopt;
  }
  if (line.ends_with('\r'))
    line.pop_back();
  return line;
}

std::optional<std::string> Ask(const std::string& prompt, const std::string& inBrackets) {
  std::cerr << prompt;
  if (!inBrackets.empty())
    std::cerr << " [" << inBrackets << "]";
  std::cerr << ": " << std::flush;
  return ReadLine();
}

std::string PromptOr(const std::string& prompt, const char* otherwise) {
  return prompt.empty() ? otherwise : prompt;
}

// Asks until the answer is a number within the question's limits.
std::optional<std::uint64_t> AskWithinLimits(const CONXOperator::NumberQuestion& question, const std::string& prompt,
                                             const std::string& inBrackets) {
  for (;;) {
    std::optional<std::string> line = Ask(prompt, inBrackets);
    if (!line)
      return std::nullopt;
    const NumberAnswer answer = ReadNumberAnswer(question, line->empty() ? inBrackets : *line);
    if (answer.value)
      return answer.value;
    if (!answer.complaint.empty())
      std::cerr << answer.complaint << '\n';
  }
}

} // namespace

void TerminalOperator::ShowMessage(const std::string& caption, const std::string& text) {
  std::cerr << caption << ": " << text << " [Enter] " << std::flush;
  ReadLine();
}

std::optional<std::uint64_t> TerminalOperator::AskNumber(const NumberQuestion& question) {
  std::cerr << question.caption << '\n';
  return AskWithinLimits(question, PromptOr(question.prompt, "Enter information"),
                         NumberForOperator(question, question.initial));
}

std::optional<std::string> TerminalOperator::AskText(const std::string& caption, const std::string& prompt,
                                                     const std::string& initial) {
  std::cerr << caption << '\n';
  std::optional<std::string> line = Ask(PromptOr(prompt, "Enter information"), initial);
  return line && line->empty() ? initial : line;
}

std::optional<std::size_t> TerminalOperator::AskItem(const std::string& caption, const std::string& prompt,
                                                     const std::vector<std::string>& items, std::uint64_t initial) {
  std::cerr << caption << '\n';
  for (std::size_t i = 0; i < items.size(); ++i)
    std::cerr << "  " << i << "  " << items[i] << '\n';
  if (items.empty()) // nothing can be chosen
    return std::nullopt;
  const NumberQuestion index{{}, {}, ONX_TYPE_UINT64, initial, 0, items.size() - 1};
  const std::string inBrackets = initial < items.size() ? NumberForOperator(index, initial) : std::string();
  return AskWithinLimits(index, PromptOr(prompt, "Select an item"), inBrackets);
}
