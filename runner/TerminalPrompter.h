// Asks a script's questions on the terminal: prompts on standard error, so that standard output stays the script's,
// answers from standard input, a line each. Each question says what may be typed.
#pragma once

#include "runner/TerminalInput.h"
#include "scriptrt/question/Prompter.h"

#include <functional>

class TerminalPrompter : public Prompter {
public:
  void ShowMessage(const std::string& caption, const std::string& text) override;
  std::optional<std::uint64_t> AskNumber(const NumberQuestion& question) override;
  std::optional<std::string> AskText(const std::string& caption, const std::string& prompt,
                                     const std::string& initial) override;
  std::optional<std::size_t> AskItem(const std::string& caption, const std::string& prompt,
                                     const std::vector<std::string>& items, std::uint64_t initial) override;

  // The script has been asked to stop, which whoever is being asked is told, once for each question. [any thread, also
  // a signal handler]
  void TellStopping() { m_input.Interrupt(); }
  // Nobody is there any more: questions, an open one too, are cancelled from now on. [as above]
  void Leave() { m_input.Close(); }
  // Somebody may be there again. [before a run]
  void Return() { m_input.Reopen(); }
  // Whether there was nobody to ask from the start. [the thread that asks]
  bool IsDeserted() const { return m_input.IsDeserted(); }

private:
  // What is typed behind the prompt; nothing means Cancel.
  std::optional<std::string> ReadAnswer(const std::string& prompt);
  // Asks until `read` makes something of the answer; otherwise it has set the complaint, which is shown.
  template <class Value>
  std::optional<Value> AskUntil(const std::string& prompt,
                                const std::function<std::optional<Value>(const std::string&, std::string&)>& read);

  TerminalInput m_input;
};
