// A report as JSON Lines, which grows while the run goes on.
#pragma once

#include "host/report/RunRecord.h"
#include "host/support/LineFile.h"

#include <tl/expected.hpp>

#include <functional>
#include <memory>
#include <string>

namespace host {

// What was added stands in the file at once; docs/reports.md describes its lines. Memory that runs out costs lines.
class JsonLinesFile {
public:
  // Replaces an older one at `path`; another file is refused. `tell` hears once when the file cannot be written any
  // more, on a thread of its own. Otherwise what is wrong, with the path.
  static tl::expected<std::unique_ptr<JsonLinesFile>, std::string>
  Open(const std::string& path, const SessionRecord& session,
       const std::function<void(const std::string& problem)>& tell);

  void Begin(const ScriptRecord& script);
  void Add(const OutputLine& output);
  void Add(const Measurement& measurement);
  void Add(const TimedAnswer& answer);
  void Add(const TrafficEntry& entry);
  void End(const ScriptRecord& script);
  void End(const SessionRecord& session);

private:
  JsonLinesFile(SoleFile file, std::function<void(const std::string&)> onFailure);
  // `record` says what the line is about, `fill` adds its other members.
  template <class Fill>
  void AddLine(const char* record, Fill fill) noexcept;

  LineFile m_file;
};

} // namespace host
