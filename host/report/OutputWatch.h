// Looks at a script's output as it comes: for lines that decide about the part, for measurements, and for the reports.
#pragma once

#include "host/report/RunRecord.h"

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace host {

class OutputWatch {
public:
  using Clock = std::chrono::steady_clock;

  // A line that has one of `failTexts` fails the part. Measurements go to the record, all other lines only when
  // `keepsLines`. The record must outlive this.
  OutputWatch(std::vector<std::string> failTexts, bool keepsLines, ScriptRecord& record, Clock::time_point begun)
      : m_failTexts(std::move(failTexts)), m_keepsLines(keepsLines), m_record(record), m_begun(begun) {}

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
  const bool m_keepsLines;
  ScriptRecord& m_record;
  const Clock::time_point m_begun;
  std::string m_pending;      // what came last and was not looked at; empty when lines are kept, each with its time
  std::string m_line;         // that has not ended yet
  bool m_afterReturn = false; // a line feed that comes next belongs to the line before
  std::string m_failure;
};

} // namespace host
