#include "host/talk/TermLog.h"

#include "host/support/Files.h"
#include "host/talk/ClockText.h"

#include <utility>

namespace host {

TermLog::TermLog() : m_view(ViewMode::kText, [] { return DateText() + " < "; }) {}

TermLog::~TermLog() {
  Write(m_view.Break());
}

bool TermLog::Open(const std::string& path) {
  m_file.reset(std::fopen(SystemPath(path).c_str(), "ab"));
  return m_file != nullptr;
}

void TermLog::WriteReceived(std::string_view bytes) {
  if (m_file)
    Write(m_view.Feed(bytes));
}

void TermLog::WriteSent(std::string_view typed) {
  WriteLine(" > ", typed);
}

void TermLog::WriteRemark(std::string_view text) {
  WriteLine(" - ", text);
}

bool TermLog::TakeFailure() {
  return std::exchange(m_failed, false);
}

void TermLog::WriteLine(std::string_view mark, std::string_view text) {
  if (m_file)
    Write(m_view.Break() + DateText().append(mark).append(text).append("\n"));
}

void TermLog::Write(const std::string& text) {
  if (!m_file || text.empty())
    return;
  if (std::fwrite(text.data(), 1, text.size(), m_file.get()) == text.size() && std::fflush(m_file.get()) == 0)
    return;
  m_failed = true;
  m_file.reset();
}

} // namespace host
