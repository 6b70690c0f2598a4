// Where records of a channel's traffic go.
#pragma once

#include "host/trace/TraceRecord.h"

namespace host {

// [any thread]
class TraceSink {
public:
  // Microseconds since the trace began.
  virtual std::uint64_t Now() const = 0;
  virtual void Write(const TraceCall& call) noexcept = 0;
  virtual void Write(const TraceEvent& event) noexcept = 0;

protected:
  ~TraceSink() = default;
};

} // namespace host
