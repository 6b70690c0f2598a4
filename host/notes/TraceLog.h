// What went over the channel lately, for a window to show.
#pragma once

#include "host/notes/RowRing.h"
#include "host/trace/TraceSink.h"

#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>

namespace host {

// Keeps the last rows. Receives that found nothing, one behind the other, are one row; locks that were granted, states
// and texts are none. [any thread]
class TraceLog final : public TraceSink {
public:
  static constexpr std::size_t kMostRows = 20000;
  static constexpr std::size_t kMostBytes = 64; // of a call, that are shown

  struct Row {
    TraceRecord record;                 // a call with its first bytes only, and without a transfer's reports
    std::uint64_t size = 0;             // of all its bytes
    std::uint64_t repeated = 1;         // calls in this row
    const std::string* owner = nullptr; // its name, where that is known; lives as long as the log
  };
  using Visitor = std::function<void(std::uint64_t number, const Row& row)>;

  void Write(const TraceCall& call) noexcept override;
  void Write(const TraceEvent& event) noexcept override;

  // Counts up whenever a row changes.
  std::uint64_t Changes() const;
  // All rows that are kept, as they are now.
  RowRing<Row> Rows() const;
  // Calls `visit` for each row from that number on.
  void Visit(std::uint64_t from, const Visitor& visit) const;
  // The number of the oldest row that is kept.
  std::uint64_t First() const;
  // A copy of a row; an empty event when it has gone meanwhile.
  Row At(std::uint64_t number) const;
  void Clear();

private:
  void Keep(const TraceCall& call);
  void Keep(const TraceEvent& event);
  void Add(Row row);
  void LearnOwner(const TraceEvent& event);

  mutable std::mutex m_mutex; // guards the fields below
  RowRing<Row> m_rows{kMostRows};
  std::uint64_t m_changes = 0;
  std::set<std::string> m_names;                        // of owners, on all channels
  std::map<std::uint64_t, const std::string*> m_owners; // those on the channel of now
};

} // namespace host
