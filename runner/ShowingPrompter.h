// Asks through another prompter, after what the script has printed is on the screen.
#pragma once

#include "scriptrt/question/Prompter.h"

#include <functional>
#include <utility>

class ShowingPrompter : public Prompter {
public:
  // The other one must outlive this one.
  explicit ShowingPrompter(Prompter& asked) : m_asked(asked) {}
  void ShowBeforeAsking(std::function<void()> show) { m_show = std::move(show); }

  void ShowMessage(const std::string& caption, const std::string& text) override;
  std::optional<std::uint64_t> AskNumber(const NumberQuestion& question) override;
  std::optional<std::string> AskText(const std::string& caption, const std::string& prompt,
                                     const std::string& initial) override;
  std::optional<std::size_t> AskItem(const std::string& caption, const std::string& prompt,
                                     const std::vector<std::string>& items, std::uint64_t initial) override;

private:
  Prompter& m_asked;
  std::function<void()> m_show = [] {};
};
