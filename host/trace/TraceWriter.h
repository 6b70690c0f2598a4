// Writes a trace while a run goes on.
#pragma once

#include "host/support/LineFile.h"
#include "host/trace/TraceClock.h"
#include "host/trace/TraceLine.h"
#include "host/trace/TraceSink.h"

#include <memory>

namespace host {

// What is older than a second stands in the file, whatever ends the process. Where it cannot be written, the run goes
// on without a trace.
class TraceWriter final : public TraceSink {
public:
  // Begins the file at `path`, as a user typed it: an older trace is replaced, another file is refused. The header's
  // start is that of `clock`. `onFailure` is told once when it cannot be written any more, on a thread of its own.
  // Otherwise the reason, with the path.
  static tl::expected<std::unique_ptr<TraceWriter>, std::string>
  Open(const std::string& path, TraceHeader header, const TraceClock& clock,
       const std::function<void(const std::string& problem)>& onFailure);
  // Writes what is left, and that the trace is complete.
  ~TraceWriter();
  TraceWriter(const TraceWriter&) = delete;
  TraceWriter& operator=(const TraceWriter&) = delete;

  // Without effect when memory runs out. [any thread]
  void Write(const TraceCall& call) noexcept override { Append(call); }
  void Write(const TraceEvent& event) noexcept override { Append(event); }

private:
  TraceWriter(SoleFile file, const TraceClock& clock, std::function<void(const std::string&)> onFailure);
  template <class Record>
  void Append(const Record& record) noexcept {
    m_file.Add([&record](std::string& lines) { AppendTraceLine(lines, record); });
  }

  const TraceClock m_clock;
  const std::uint64_t m_startCpu; // microseconds
  LineFile m_file;
};

} // namespace host
