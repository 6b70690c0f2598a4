// All that the windows of the sample host remember and note.
#pragma once

#include "host/notes/ChannelUse.h"
#include "host/notes/SessionLog.h"
#include "host/notes/SettingsFile.h"
#include "host/notes/TraceLog.h"
#include "host/trace/TraceFork.h"

namespace host {

struct Notes {
  // No path: nothing is remembered. What goes over the channel goes to the sinks of `recordSinks` too, which outlive
  // this.
  Notes(const std::string& settingsPath, TraceFork& recordSinks)
      : settings(settingsPath, [this](const std::string& problem) { log.Add(LogTopic::kError, problem); }),
        records(recordSinks) {
    records.Add(trace);
  }
  Notes(const Notes&) = delete;
  Notes& operator=(const Notes&) = delete;

  // An event beside the calls, that happens now.
  void Trace(std::string_view event, std::vector<std::pair<std::string, std::string>> fields = {}) {
    records.Write(TraceEvent{std::string(event), records.Clock().Now(), std::move(fields)});
  }

  SessionLog log; // in front of those that write to it
  SettingsFile settings;
  TraceLog trace;
  TraceFork& records; // of the channel, and what is noted beside it
  ChannelUse use;
};

} // namespace host
