#include "host/report/RunReports.h"

#include "host/support/Files.h"

#include <algorithm>
#include <new>
#include <optional>

namespace host {
namespace {

// A report shows the beginning of what was sent.
constexpr std::size_t kKeptBytes = 64;

bool MovesSomething(const TraceCall& call) {
  switch (call.operation) {
  case ChannelOperation::kReceive: // a script that waits does thousands that find nothing
    return !call.bytes.empty() || call.result != 0;
  case ChannelOperation::kTransmit:
  case ChannelOperation::kTransmitFileFromMemory:
  case ChannelOperation::kTransmitFile:
  case ChannelOperation::kReadDirectory:
  case ChannelOperation::kDeleteDeviceFile:
  case ChannelOperation::kFormatDevice:
    return true;
  default:
    return false;
  }
}

TrafficEntry EntryOf(const TraceCall& call, std::uint64_t origin) {
  TrafficEntry entry{};
  entry.at = Microseconds(call.start - std::min(origin, call.start));
  entry.took = Microseconds(call.duration);
  entry.operation = call.Name();
  entry.answer = call.result;
  if (call.result == 0) {
    entry.bytes = call.contents ? call.contents->size : call.bytes.size();
    entry.data = call.bytes.substr(0, kKeptBytes);
  }
  entry.toDevice = call.operation != ChannelOperation::kReceive;
  return entry;
}

} // namespace

bool RunReports::Begin() {
  for (const ReportRequest& request : m_requests) {
    if (request.format->make) {
      m_keeps = true;
      continue;
    }
    auto file = JsonLinesFile::Open(request.path, m_session, m_tell);
    if (!file) {
      m_tell(file.error());
      return false;
    }
    m_growing.push_back(std::move(*file));
  }
  return true;
}

void RunReports::BeginScript(std::uint64_t now) {
  ++m_begun;
  m_runs = true;
  m_origin = now;
  for (const auto& file : m_growing)
    file->Begin(Current());
}

void RunReports::Add(OutputLine line) {
  Pass(line);
  if (m_keeps)
    Current().output.Add(std::move(line));
}

void RunReports::Add(Measurement measurement) {
  Pass(measurement);
  if (m_keeps)
    Current().measurements.push_back(std::move(measurement));
}

void RunReports::Add(TimedAnswer answer) {
  Pass(answer);
  if (m_keeps)
    Current().questions.push_back(std::move(answer));
}

void RunReports::Write(const TraceCall& call) noexcept {
  if (!m_runs || !MovesSomething(call))
    return;
  try {
    TrafficEntry entry = EntryOf(call, m_origin);
    Pass(entry);
    if (m_keeps)
      Current().traffic.Add(std::move(entry));
  } catch (const std::bad_alloc&) {
    // The run is worth more than its report.
  }
}

void RunReports::EndScript() {
  m_runs = false;
  for (const auto& file : m_growing)
    file->End(Current());
}

void RunReports::Finish() {
  while (m_begun < m_session.scripts.size()) {
    BeginScript(m_origin);
    EndScript();
  }
  for (const auto& file : m_growing)
    file->End(m_session);
  m_growing.clear();
  for (const ReportRequest& request : m_requests) {
    if (!request.format->make)
      continue;
    std::string problem = "the report cannot be written";
    try {
      if (WriteWholeFile(request.path, request.format->make(m_session)))
        continue;
    } catch (const std::bad_alloc&) {
      problem = "there is not enough memory for the report";
    }
    m_tell(request.path + ": " + problem);
  }
}

} // namespace host
