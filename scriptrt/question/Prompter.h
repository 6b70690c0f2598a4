// Shows a script's messages and asks its questions, of whoever sits at the bench: the user. One body shows windows,
// one asks on the terminal.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// Called on the thread that runs the script, which waits for the answer. No answer means Cancel.
class Prompter {
public:
  // A number question's type and limits. Values are 64-bit patterns; `type` says how to read them.
  struct NumberQuestion {
    std::string caption;
    std::string prompt;
    std::uint32_t type; // ONX_TYPE_…, numeric
    std::uint64_t initial;
    std::uint64_t minimum;
    std::uint64_t maximum;
  };

  virtual ~Prompter() = default;

  virtual void ShowMessage(const std::string& caption, const std::string& text) = 0;
  // The answer lies within the limits.
  virtual std::optional<std::uint64_t> AskNumber(const NumberQuestion& question) = 0;
  virtual std::optional<std::string> AskText(const std::string& caption, const std::string& prompt,
                                             const std::string& initial) = 0;
  // Index of the chosen item; `initial` outside the list selects nothing.
  virtual std::optional<std::size_t> AskItem(const std::string& caption, const std::string& prompt,
                                             const std::vector<std::string>& items, std::uint64_t initial) = 0;
};
