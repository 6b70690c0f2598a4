// Asks a script's questions on the terminal: prompts on standard error, so that standard output stays the script's,
// answers from standard input, a line each. An empty line takes what stands in brackets; the end of input is Cancel.
#pragma once

#include "scriptrt/question/Operator.h"

class TerminalOperator : public CONXOperator {
public:
  void ShowMessage(const std::string& caption, const std::string& text) override;
  std::optional<std::uint64_t> AskNumber(const NumberQuestion& question) override;
  std::optional<std::string> AskText(const std::string& caption, const std::string& prompt,
                                     const std::string& initial) override;
  std::optional<std::size_t> AskItem(const std::string& caption, const std::string& prompt,
                                     const std::vector<std::string>& items, std::uint64_t initial) override;
};
