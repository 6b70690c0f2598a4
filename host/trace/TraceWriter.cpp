#include "host/trace/TraceWriter.h"

#include "host/support/CpuTime.h"
#include "host/support/SystemError.h"
#include "host/trace/TraceLine.h"

#include <exception>
#include <new>
#include <utility>

namespace host {
namespace {

constexpr std::chrono::milliseconds kFlushTime{500};
constexpr std::size_t kMuch = 65536;              // bytes that are written at once
constexpr std::size_t kTooMuch = 8 * 1024 * 1024; // bytes that wait before records do

std::int64_t WallTime() {
  const auto time = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::microseconds>(time).count();
}

// Whether a file may be replaced by a trace: an empty one, or another trace.
bool IsReplaceable(const std::string& beginning) {
  std::string header;
  AppendTraceLine(header, TraceHeader{});
  const std::string_view schema = std::string_view(header).substr(0, header.find(','));
  return beginning.starts_with(schema) || beginning.empty();
}

} // namespace

tl::expected<std::unique_ptr<TraceWriter>, std::string>
TraceWriter::Open(const std::string& path, TraceHeader header, std::function<void(const std::string&)> onFailure) {
  auto file = SoleFile::Open(path);
  if (!file)
    return tl::unexpected("cannot write the trace " + path + ": " + file.error());
  if (!IsReplaceable(file->Beginning(64)))
    return tl::unexpected(path + " is not a trace, and is not replaced by one");
  if (!file->Clear())
    return tl::unexpected("cannot write the trace " + path);
  header.start = WallTime();
  std::unique_ptr<TraceWriter> writer(new TraceWriter(std::move(*file), path, std::move(onFailure)));
  AppendTraceLine(writer->m_pending, header);
  writer->m_thread = std::thread([raw = writer.get()] { raw->WriteInTime(); });
  return writer;
}

TraceWriter::TraceWriter(SoleFile file, std::string path, std::function<void(const std::string&)> onFailure)
    : m_file(std::move(file)), m_path(std::move(path)), m_onFailure(std::move(onFailure)), m_start(Clock::now()),
      m_startCpu(ProcessCpuTime()) {}

TraceWriter::~TraceWriter() {
  try {
    Write(TraceEvent{std::string(kTraceEndEvent), Now(), {{"cpu", std::to_string(ProcessCpuTime() - m_startCpu)}}});
  } catch (const std::bad_alloc&) {
    // Then it ends as if the process had been killed.
  }
  {
    const std::lock_guard guard(m_mutex);
    m_ending = true;
  }
  m_wake.notify_one();
  if (m_thread.joinable())
    m_thread.join();
}

std::uint64_t TraceWriter::Now() const {
  const auto time = Clock::now() - m_start;
  return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(time).count());
}

template <class Record>
void TraceWriter::Append(const Record& record) noexcept {
  try {
    std::unique_lock lock(m_mutex);
    m_written.wait(lock, [this] { return m_failed || m_pending.size() < kTooMuch; });
    if (m_failed)
      return;
    const std::size_t before = m_pending.size();
    AppendTraceLine(m_pending, record);
    if (before < kMuch && m_pending.size() >= kMuch)
      m_wake.notify_one();
  } catch (const std::exception&) {
    // The run matters more than its trace.
  }
}

// The thread's.
void TraceWriter::WriteInTime() {
  std::string lines;
  std::unique_lock lock(m_mutex);
  for (bool ending = false; !ending;) {
    m_wake.wait_for(lock, kFlushTime, [this] { return m_ending || m_pending.size() >= kMuch; });
    ending = m_ending;
    lines.clear();
    lines.swap(m_pending); // both keep their memory
    if (m_failed || lines.empty())
      continue;
    lock.unlock();
    const int error = m_file.Write(lines);
    if (error != 0)
      Tell(error);
    lock.lock();
    m_failed = error != 0;
    m_written.notify_all();
  }
}

void TraceWriter::Tell(int error) const noexcept {
  try {
    m_onFailure("the trace " + m_path + " cannot be written any more: " + SystemErrorText(error));
  } catch (const std::bad_alloc&) {
    // No memory to tell it with.
  }
}

template void TraceWriter::Append(const TraceCall&) noexcept;
template void TraceWriter::Append(const TraceEvent&) noexcept;

} // namespace host
