#include "host/trace/TraceSummary.h"

#include "host/support/Text.h"

#include <algorithm>
#include <cstdio>
#include <numeric>

namespace host {
namespace {

void Count(const TraceCall& call, TraceSummary& summary) {
  ++summary.calls[IndexOf(call.operation)];
  summary.inCalls += call.duration;
  const bool answersCode =
      call.operation != ChannelOperation::kGetState && call.operation != ChannelOperation::kGetDirectoryEntryCount;
  if (answersCode && call.result != 0)
    ++summary.failures;
  else if (call.operation == ChannelOperation::kReceive && call.bytes.empty())
    ++summary.emptyReceives;
  if (call.Shape().sends && call.result == 0)
    summary.bytesSent += call.bytes.size();
  if (call.Shape().receives)
    summary.bytesReceived += call.bytes.size();
}

std::string SecondsText(std::uint64_t microseconds) {
  char text[40];
  std::snprintf(text, sizeof text, "%.3f s", static_cast<double>(microseconds) / 1e6);
  return text;
}

} // namespace

TraceSummary Summarize(const Trace& trace, const TraceFilter& filter) {
  TraceSummary summary;
  for (const TraceEntry& entry : trace.entries) {
    if (const auto* const call = std::get_if<TraceCall>(&entry.record)) {
      summary.time = std::max(summary.time, call->start + call->duration);
      if (filter.Fits(entry.record))
        Count(*call, summary);
      continue;
    }
    const auto& event = std::get<TraceEvent>(entry.record);
    summary.time = std::max(summary.time, event.start);
    if (std::uint64_t cpu = 0; event.name == kTraceEndEvent && ParseNumber(event.Field("cpu"), cpu))
      summary.computing = cpu;
  }
  return summary;
}

std::string SummaryText(const TraceSummary& summary) {
  const std::uint64_t calls = std::accumulate(summary.calls.begin(), summary.calls.end(), std::uint64_t{0});
  std::string text = "calls      " + std::to_string(calls);
  std::string_view separator = ": ";
  for (const ChannelOperationTraits& known : kChannelOperations) {
    const std::uint64_t count = summary.calls[IndexOf(known.operation)];
    if (count == 0)
      continue;
    text.append(separator).append(known.name).append(" ").append(std::to_string(count));
    separator = ", ";
    if (known.operation == ChannelOperation::kReceive && summary.emptyReceives != 0)
      text += " (" + std::to_string(summary.emptyReceives) + " found nothing)";
  }
  if (summary.failures != 0)
    text += "; " + std::to_string(summary.failures) + " failed";
  text += "\nsent       " + std::to_string(summary.bytesSent) + " bytes\nreceived   " +
          std::to_string(summary.bytesReceived) + " bytes\ntime       " + SecondsText(summary.time) + ", " +
          SecondsText(summary.inCalls) + " of it in these calls\n";
  if (!summary.computing)
    return text + "computing  not known: the trace was cut off\n";
  const std::uint64_t computing = std::min(*summary.computing, summary.time); // several threads may compute at once
  return text + "computing  " + SecondsText(computing) + ", waiting " + SecondsText(summary.time - computing) + "\n";
}

} // namespace host
