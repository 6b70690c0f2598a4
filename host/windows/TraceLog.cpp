#include "host/windows/TraceLog.h"

#include <algorithm>
#include <new>

namespace host {
namespace {

bool FindsNothing(const TraceCall& call) {
  return call.operation == ChannelOperation::kReceive && call.result == 0 && call.bytes.empty();
}

// What tools do all the time to see how the channel is doing.
bool IsRoutine(const TraceCall& call) {
  const bool isLock = call.operation == ChannelOperation::kLock || call.operation == ChannelOperation::kUnlock;
  return call.operation == ChannelOperation::kGetState || call.operation == ChannelOperation::kGetInfoString ||
         (isLock && call.result == 0);
}

} // namespace

void TraceLog::Write(const TraceCall& call) noexcept {
  if (IsRoutine(call))
    return;
  try {
    Keep(call);
  } catch (const std::bad_alloc&) {
    // The call matters more than its row.
  }
}

void TraceLog::Keep(const TraceCall& call) {
  Row row;
  row.call = call;
  row.call.progress.clear();
  row.call.bytes.resize(std::min(call.bytes.size(), kMostBytes));
  row.call.bytes.shrink_to_fit();
  row.size = call.bytes.size();
  const std::lock_guard guard(m_mutex);
  ++m_changes;
  if (!m_rows.empty()) {
    Row& last = m_rows[(m_oldest + m_rows.size() - 1) % m_rows.size()];
    if (FindsNothing(call) && FindsNothing(last.call) && call.owner == last.call.owner) {
      ++last.repeated;
      return;
    }
  }
  if (m_rows.size() < kMostRows) {
    m_rows.push_back(std::move(row));
  } else {
    m_rows[m_oldest] = std::move(row);
    m_oldest = (m_oldest + 1) % kMostRows;
  }
}

std::size_t TraceLog::Count() const {
  const std::lock_guard guard(m_mutex);
  return m_rows.size();
}

std::uint64_t TraceLog::Changes() const {
  const std::lock_guard guard(m_mutex);
  return m_changes;
}

TraceLog::Row TraceLog::At(std::size_t index) const {
  const std::lock_guard guard(m_mutex);
  return index < m_rows.size() ? m_rows[(m_oldest + index) % m_rows.size()] : Row();
}

void TraceLog::Clear() {
  const std::lock_guard guard(m_mutex);
  m_rows.clear();
  m_oldest = 0;
  ++m_changes;
}

} // namespace host
