// Where records of a channel's traffic go: to a file, a window, reports.
#pragma once

#include "host/trace/TraceRecord.h"

namespace host {

// [any thread]
class TraceSink {
public:
  virtual void Write(const TraceCall& call) noexcept = 0;
  virtual void Write(const TraceEvent& event) noexcept = 0;

protected:
  ~TraceSink() = default;
};

} // namespace host
