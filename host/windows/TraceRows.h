// What went over the channel, as rows.
#pragma once

#include "host/notes/TraceLog.h"
#include "host/trace/TraceFilter.h"
#include "host/windows/KeptRows.h"

namespace host {

class TraceRows final : public KeptRows<TraceLog> {
public:
  using KeptRows::KeptRows;

  std::span<const RowColumn> Columns() const override;
  std::vector<std::string> Filters() const override;
  void SetFilter(std::size_t filter) override;

private:
  bool Fits(const TraceLog::Row& row) const override { return m_filter.Fits(row.record); }
  std::vector<std::string> TextsOf(const TraceLog::Row& row) const override;

  TraceFilter m_filter;
};

} // namespace host
