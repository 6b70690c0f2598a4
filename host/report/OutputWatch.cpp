#include "host/report/OutputWatch.h"

#include "host/report/Measurement.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace host {
namespace {

// What has no end after this many bytes is taken as a line.
constexpr std::size_t kLongestLine = 1 << 20;
// As much as is looked at together.
constexpr std::size_t kBlock = 16 << 10;
// As long as a reader of a report has patience for.
constexpr std::size_t kLongestKept = 2000;

std::string Kept(const std::string& line) {
  return line.size() <= kLongestKept
             ? line
             : line.substr(0, kLongestKept) + " [" + std::to_string(line.size() - kLongestKept) + " bytes more]";
}

// Each byte is looked at by the quick search for one of them.
std::size_t EndOfLine(std::string_view text) {
  const std::size_t feed = text.find('\n');
  return std::min(text.substr(0, feed).find('\r'), feed);
}

} // namespace

void OutputWatch::Add(std::string_view piece) {
  if (m_reports.AreWanted())
    return Look(piece);
  m_pending.append(piece.data(), piece.size());
  if (m_pending.size() >= kBlock)
    LookAtPending();
}

// Whole lines among which there is nothing that counts need no closer look.
void OutputWatch::LookAtPending() {
  const std::size_t ended = m_pending.find_last_of("\r\n") + 1; // 0: no line ends
  if (ended != 0 && m_line.empty() && m_failTexts.empty() && !MayHaveMeasurements(m_pending)) {
    m_pending.erase(0, ended);
    return;
  }
  Look(m_pending);
  m_pending.clear();
}

void OutputWatch::Look(std::string_view piece) {
  while (!piece.empty()) {
    if (std::exchange(m_afterReturn, false) && piece.front() == '\n') {
      piece.remove_prefix(1);
      continue;
    }
    const std::size_t end = EndOfLine(piece);
    const std::size_t taken = std::min({end, piece.size(), kLongestLine - m_line.size()});
    m_line += piece.substr(0, taken);
    const bool isEnd = taken == end;
    m_afterReturn = isEnd && piece[end] == '\r';
    piece.remove_prefix(taken + (isEnd ? 1 : 0));
    if (isEnd || m_line.size() == kLongestLine)
      TakeLine();
  }
}

void OutputWatch::Finish() {
  LookAtPending();
  Look(std::exchange(m_pending, {}));
  if (!m_line.empty())
    TakeLine();
}

void OutputWatch::TakeLine() {
  if (m_reports.AreWanted())
    m_reports.Add(OutputLine{Now(), Kept(m_line)});
  JudgeLine();
  m_line.clear();
}

Microseconds OutputWatch::Now() const {
  return std::chrono::duration_cast<Microseconds>(Clock::now() - m_begun);
}

void OutputWatch::JudgeLine() {
  const auto failText = std::find_if(m_failTexts.begin(), m_failTexts.end(), [this](const std::string& text) {
    return m_line.find(text) != std::string::npos;
  });
  std::optional<Measurement> measurement = ReadMeasurement(m_line);
  if (m_failure.empty() && failText != m_failTexts.end())
    m_failure = "it printed \"" + Kept(m_line) + "\"";
  if (!measurement)
    return;
  if (m_failure.empty() && !measurement->passed)
    m_failure = Kept(m_line);
  measurement->at = Now();
  m_reports.Add(std::move(*measurement));
}

} // namespace host
