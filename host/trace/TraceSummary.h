// What a trace amounts to.
#pragma once

#include "host/trace/TraceFilter.h"
#include "host/trace/TraceReader.h"

#include <array>
#include <optional>
#include <string>

namespace host {

struct TraceSummary {
  std::array<std::uint64_t, kChannelOperations.size()> calls{}; // by operation
  std::uint64_t emptyReceives = 0;
  std::uint64_t failures = 0;
  std::uint64_t bytesSent = 0;
  std::uint64_t bytesReceived = 0;
  std::uint64_t time = 0;                 // microseconds from the trace's start to its last record
  std::uint64_t inCalls = 0;              // of which in the calls that were counted
  std::optional<std::uint64_t> computing; // of which the program computed; a trace that was cut off does not tell
};

// Counts the calls that the filter lets through.
TraceSummary Summarize(const Trace& trace, const TraceFilter& filter);
// Lines for people.
std::string SummaryText(const TraceSummary& summary);

} // namespace host
