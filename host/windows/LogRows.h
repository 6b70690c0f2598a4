// The log as rows.
#pragma once

#include "host/notes/SessionLog.h"
#include "host/windows/KeptRows.h"

namespace host {

class LogRows final : public KeptRows<SessionLog> {
public:
  using KeptRows::KeptRows;

  std::span<const RowColumn> Columns() const override;
  std::vector<std::string> Filters() const override;
  void SetFilter(std::size_t filter) override;

private:
  bool Fits(const SessionLog::Line& line) const override { return !m_topic || *m_topic == line.topic; }
  std::vector<std::string> TextsOf(const SessionLog::Line& line) const override;

  std::optional<LogTopic> m_topic; // the only one that is shown
};

} // namespace host
