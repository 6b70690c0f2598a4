#include "runner/ShowingPrompter.h"

void ShowingPrompter::ShowMessage(const std::string& caption, const std::string& text) {
  m_show();
  m_asked.ShowMessage(caption, text);
}

std::optional<std::uint64_t> ShowingPrompter::AskNumber(const NumberQuestion& question) {
  m_show();
  return m_asked.AskNumber(question);
}

std::optional<std::string> ShowingPrompter::AskText(const std::string& caption, const std::string& prompt,
                                                    const std::string& initial) {
  m_show();
  return m_asked.AskText(caption, prompt, initial);
}

std::optional<std::size_t> ShowingPrompter::AskItem(const std::string& caption, const std::string& prompt,
                                                    const std::vector<std::string>& items, std::uint64_t initial) {
  m_show();
  return m_asked.AskItem(caption, prompt, items, initial);
}
