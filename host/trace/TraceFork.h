// From one channel to all who want its records.
#pragma once

#include "host/trace/TraceClock.h"
#include "host/trace/TraceSink.h"

#include <vector>

namespace host {

// Passes each record on to every sink, in the order in which they were added. They have one clock, and outlive the
// calls. [any thread, once all are added]
class TraceFork final : public TraceSink {
public:
  const TraceClock& Clock() const { return m_clock; }
  void Add(TraceSink& sink) { m_sinks.push_back(&sink); }
  bool IsEmpty() const { return m_sinks.empty(); }

  void Write(const TraceCall& call) noexcept override { Pass(call); }
  void Write(const TraceEvent& event) noexcept override { Pass(event); }

private:
  template <class Record>
  void Pass(const Record& record) noexcept {
    for (TraceSink* const sink : m_sinks)
      sink->Write(record);
  }

  const TraceClock m_clock;
  std::vector<TraceSink*> m_sinks;
};

} // namespace host
