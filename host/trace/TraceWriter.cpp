#include "host/trace/TraceWriter.h"

#include "host/support/CpuTime.h"

#include <new>
#include <utility>

namespace host {
namespace {

constexpr std::chrono::milliseconds kPatience{500};

// Whether a file may be replaced by a trace: an empty one, or another trace.
bool IsReplaceable(const std::string& beginning) {
  std::string header;
  AppendTraceLine(header, TraceHeader{});
  const std::string_view schema = std::string_view(header).substr(0, header.find(','));
  return beginning.starts_with(schema) || beginning.empty();
}

} // namespace

tl::expected<std::unique_ptr<TraceWriter>, std::string>
TraceWriter::Open(const std::string& path, TraceHeader header, const TraceClock& clock,
                  const std::function<void(const std::string&)>& onFailure) {
  auto file = SoleFile::Open(path);
  if (!file)
    return tl::unexpected("cannot write the trace " + path + ": " + file.error());
  if (!IsReplaceable(file->Beginning(64)))
    return tl::unexpected(path + " is not a trace, and is not replaced by one");
  if (!file->Clear())
    return tl::unexpected("cannot write the trace " + path);
  header.start = clock.Start();
  std::unique_ptr<TraceWriter> writer(
      new TraceWriter(std::move(*file), clock, [path, onFailure](const std::string& reason) {
        onFailure("the trace " + path + " cannot be written any more: " + reason);
      }));
  writer->Append(header);
  return writer;
}

TraceWriter::TraceWriter(SoleFile file, const TraceClock& clock, std::function<void(const std::string&)> onFailure)
    : m_clock(clock), m_startCpu(ProcessCpuTime()), m_file(std::move(file), kPatience, std::move(onFailure)) {}

TraceWriter::~TraceWriter() {
  try {
    Write(TraceEvent{
        std::string(kTraceEndEvent), m_clock.Now(), {{"cpu", std::to_string(ProcessCpuTime() - m_startCpu)}}});
  } catch (const std::bad_alloc&) {
    // Then it ends as if the process had been killed.
  }
}

} // namespace host
