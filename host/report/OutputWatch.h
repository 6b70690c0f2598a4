// Looks at a script's output as it comes: for lines that decide about the part, for measurements, and for the reports.
#pragma once

#include "host/report/RunReports.h"

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace host {

class OutputWatch {
public:
  using Clock = std::chrono::steady_clock;

  // A line that has one of `failTexts` fails the part. Lines and measurements go to the reports, which must outlive
  // this.
  OutputWatch(std::vector<std::string> failTexts, RunReports& reports, Clock::time_point begun)
      : m_failTexts(std::move(failTexts)), m_reports(reports), m_begun(begun) {}

  // A piece of the output. Throws std::bad_alloc.
  void Add(std::string_view piece);
  // The output is at its end; its last line may have none.
  void Finish();

  // Why the part is bad by what was printed; empty: it is not.
  const std::string& Failure() const { return m_failure; }

private:
  void LookAtPending();
  void Look(std::string_view text);
  void TakeLine();
  void JudgeLine();
  Microseconds Now() const;

  const std::vector<std::string> m_failTexts;
  RunReports& m_reports;
  const Clock::time_point m_begun;
  std::string m_pending;      // what came last and was not looked at; empty when lines are reported, each with its time
  std::string m_line;         // that has not ended yet
  bool m_afterReturn = false; // a line feed that comes next belongs to the line before
  std::string m_failure;
};

} // namespace host
