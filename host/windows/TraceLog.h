// What went over the channel lately, for a window to show.
#pragma once

#include "host/trace/TraceSink.h"

#include <mutex>
#include <string>
#include <vector>

namespace host {

// Keeps the last rows. Receives that found nothing, one behind the other, are one row; locks that were granted, states
// and texts are none. [any thread]
class TraceLog final : public TraceSink {
public:
  static constexpr std::size_t kMostRows = 20000;
  static constexpr std::size_t kMostBytes = 64; // of a call, that are shown

  struct Row {
    TraceCall call;             // with its first bytes only, and without a transfer's reports
    std::uint64_t size = 0;     // of all its bytes
    std::uint64_t repeated = 1; // calls in this row
  };

  void Write(const TraceCall& call) noexcept override;
  void Write(const TraceEvent&) noexcept override {} // there is no row for it

  // How many rows are kept.
  std::size_t Count() const;
  // Counts up whenever a row changes.
  std::uint64_t Changes() const;
  // A copy of a row, 0 being the oldest; an empty one when it has gone meanwhile.
  Row At(std::size_t index) const;
  void Clear();

private:
  void Keep(const TraceCall& call);

  mutable std::mutex m_mutex; // guards the fields below
  std::vector<Row> m_rows;    // a ring, once it is full
  std::size_t m_oldest = 0;
  std::uint64_t m_changes = 0;
};

} // namespace host
