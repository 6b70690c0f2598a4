#include "runner/TerminalPrompter.h"

#include "host/answers/ItemAnswer.h"
#include "host/support/Text.h"
#include "runner/StandardInput.h"
#include "scriptrt/question/NumberAnswer.h"

#include <iostream>

namespace {

void ShowHeading(const std::string& caption, const std::string& hint) {
  std::cerr << caption << (caption.empty() ? "(" : " (") << hint << ")\n";
}

// How a question is cancelled.
std::string Cancelling() {
  return std::string(EndKeys()) + " cancels";
}

// "PROMPT (remark) [initial]: "
std::string Prompt(const std::string& prompt, const char* otherwise, const std::string& remark,
                   const std::string& initial) {
  std::string text = prompt.empty() ? otherwise : prompt;
  if (!remark.empty())
    text += " (" + remark + ")";
  if (!initial.empty())
    text += " [" + initial + "]";
  return text + ": ";
}

} // namespace

std::optional<std::string> TerminalPrompter::ReadAnswer(const std::string& prompt) {
  std::cerr << prompt << std::flush;
  std::optional<std::string> line = m_input.ReadLine([&prompt] {
    // The terminal has thrown away what was typed so far.
    std::cerr
        << "\nThe script stops at its next loop round or wait behind this question; Ctrl+C again ends the program "
           "at once\n"
        << prompt << std::flush;
  });
  if (!line)
    std::cerr << '\n';
  return line;
}

template <class Value>
std::optional<Value>
TerminalPrompter::AskUntil(const std::string& prompt,
                           const std::function<std::optional<Value>(const std::string&, std::string&)>& read) {
  while (const std::optional<std::string> line = ReadAnswer(prompt)) {
    std::string complaint;
    if (const std::optional<Value> value = read(*line, complaint))
      return value;
    std::cerr << complaint << '\n';
  }
  return std::nullopt;
}

void TerminalPrompter::ShowMessage(const std::string& caption, const std::string& text) {
  ReadAnswer(caption + ": " + text + " [Enter] ");
}

std::optional<std::uint64_t> TerminalPrompter::AskNumber(const NumberQuestion& question) {
  ShowHeading(question.caption, "Enter takes the value in brackets, " + Cancelling());
  const std::string initial = NumberForPrompt(question, question.initial);
  return AskUntil<std::uint64_t>(Prompt(question.prompt, "Enter information", LimitsForPrompt(question), initial),
                                 [&](const std::string& line, std::string& complaint) {
                                   NumberAnswer answer = ReadNumberAnswer(question, line.empty() ? initial : line);
                                   complaint = answer.complaint.empty() ? host::Quoted(line) + " is not a number"
                                                                        : answer.complaint;
                                   return answer.value;
                                 });
}

std::optional<std::string> TerminalPrompter::AskText(const std::string& caption, const std::string& prompt,
                                                     const std::string& initial) {
  constexpr const char* kEmptyText = "\"\"";
  ShowHeading(caption, initial.empty() ? "Enter takes the empty text, " + Cancelling()
                                       : std::string("Enter takes the text in brackets, ") + kEmptyText +
                                             " the empty one, " + Cancelling());
  const std::optional<std::string> line = ReadAnswer(Prompt(prompt, "Enter information", {}, initial));
  if (!line || initial.empty())
    return line;
  return line->empty() ? initial : *line == kEmptyText ? std::string() : *line;
}

std::optional<std::size_t> TerminalPrompter::AskItem(const std::string& caption, const std::string& prompt,
                                                     const std::vector<std::string>& items, std::uint64_t initial) {
  if (items.empty()) { // nothing can be chosen
    std::cerr << caption << '\n';
    return std::nullopt;
  }
  const std::string inBrackets = initial < items.size() ? std::to_string(initial) : std::string();
  std::string hint = inBrackets.empty() ? "" : "Enter takes the item whose number is in brackets, ";
  if (host::HasTextLikeNumber(items))
    hint += "a text that looks like a number stands in \"quotes\", ";
  ShowHeading(caption, hint + Cancelling());
  for (std::size_t i = 0; i < items.size(); ++i)
    std::cerr << "  " << i << "  " << items[i] << '\n';
  return AskUntil<std::size_t>(Prompt(prompt, "Select an item", "number or text", inBrackets),
                               [&](const std::string& line, std::string& complaint) -> std::optional<std::size_t> {
                                 complaint = line.empty() ? "Type the number or the text of an item"
                                                          : host::Quoted(line) +
                                                                " is neither the number nor the text of an item";
                                 return host::FindItem(items, line.empty() ? inBrackets : line);
                               });
}
