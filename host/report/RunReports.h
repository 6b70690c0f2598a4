// The reports of a call of `run`: those that grow while it goes on, and those that are made when it has ended.
#pragma once

#include "host/report/JsonLinesFile.h"
#include "host/report/Reports.h"
#include "host/trace/TraceSink.h"

#include <functional>
#include <memory>
#include <vector>

namespace host {

// Hears of everything that happens, from the thread that runs the scripts; as a sink of the channel's records it takes
// from those what moved something.
class RunReports final : public TraceSink {
public:
  // All must outlive this. `tell` hears what cannot be written; a growing report may call it on a thread of its own.
  RunReports(SessionRecord& session, const std::vector<ReportRequest>& requests,
             std::function<void(const std::string& problem)> tell)
      : m_session(session), m_requests(requests), m_tell(std::move(tell)) {}

  bool AreWanted() const { return !m_requests.empty(); }
  // Begins the growing ones. False: one cannot be, which has been told.
  bool Begin();
  // The session's next script runs from now on; `now` is the time in the channel's records.
  void BeginScript(std::uint64_t now);
  // Of the script that runs. Throws std::bad_alloc.
  void Add(OutputLine line);
  void Add(Measurement measurement);
  void Add(TimedAnswer answer);
  void Write(const TraceCall& call) noexcept override;
  void Write(const TraceEvent&) noexcept override {} // questions are told above, with more about them
  // Its record is complete.
  void EndScript();
  // The whole session is. A report that cannot be written takes nothing away from what the scripts found out, so it
  // only is told.
  void Finish();

private:
  ScriptRecord& Current() const { return m_session.scripts[m_begun - 1]; }
  template <class Item>
  void Pass(const Item& item) const {
    for (const auto& file : m_growing)
      file->Add(item);
  }

  SessionRecord& m_session;
  const std::vector<ReportRequest>& m_requests;
  const std::function<void(const std::string&)> m_tell;
  std::vector<std::unique_ptr<JsonLinesFile>> m_growing;
  bool m_keeps = false;       // some are made at the end
  bool m_runs = false;        // a script does
  std::size_t m_begun = 0;    // scripts
  std::uint64_t m_origin = 0; // the time in the channel's records when the script began
};

} // namespace host
