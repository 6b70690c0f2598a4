// Writes a trace while a run goes on.
#pragma once

#include "host/support/SoleFile.h"
#include "host/trace/TraceSink.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace host {

// Records go to a thread that writes them every half second, or sooner when many come: whatever ends the process, what
// is older than a second stands in the file. Where the file cannot be written, the run goes on without a trace.
class TraceWriter final : public TraceSink {
public:
  // Begins the file at `path`, as a user typed it: an older trace is replaced, another file is refused. `onFailure` is
  // told once when it cannot be written any more, on the writer's thread. Otherwise the reason, with the path.
  static tl::expected<std::unique_ptr<TraceWriter>, std::string>
  Open(const std::string& path, TraceHeader header, std::function<void(const std::string& problem)> onFailure);
  // Writes what is left, and that the trace is complete.
  ~TraceWriter();
  TraceWriter(const TraceWriter&) = delete;
  TraceWriter& operator=(const TraceWriter&) = delete;

  std::uint64_t Now() const override;
  // Without effect when memory runs out. [any thread]
  void Write(const TraceCall& call) noexcept override { Append(call); }
  void Write(const TraceEvent& event) noexcept override { Append(event); }

private:
  using Clock = std::chrono::steady_clock;

  TraceWriter(SoleFile file, std::string path, std::function<void(const std::string&)> onFailure);
  template <class Record>
  void Append(const Record& record) noexcept;
  void WriteInTime();
  void Tell(int error) const noexcept;

  SoleFile m_file; // the thread's while it runs, as the next two
  const std::string m_path;
  const std::function<void(const std::string&)> m_onFailure;
  const Clock::time_point m_start;
  const std::uint64_t m_startCpu; // microseconds
  std::mutex m_mutex;             // guards the fields below
  std::string m_pending;          // lines
  bool m_failed = false;
  bool m_ending = false;
  std::condition_variable m_wake;    // there is much to write, or the end
  std::condition_variable m_written; // some of it is
  std::thread m_thread;
};

} // namespace host
