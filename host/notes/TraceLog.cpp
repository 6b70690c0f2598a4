#include "host/notes/TraceLog.h"

#include "host/support/Text.h"

#include <algorithm>
#include <new>

namespace host {
namespace {

bool FindsNothing(const TraceRecord& record) {
  const auto* const call = std::get_if<TraceCall>(&record);
  return call && call->operation == ChannelOperation::kReceive && call->result == 0 && call->bytes.empty();
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

void TraceLog::Write(const TraceEvent& event) noexcept {
  try {
    Keep(event);
  } catch (const std::bad_alloc&) {
    // As above.
  }
}

void TraceLog::Keep(const TraceCall& call) {
  TraceCall kept = call;
  kept.progress.clear();
  kept.bytes.resize(std::min(call.bytes.size(), kMostBytes));
  kept.bytes.shrink_to_fit();
  const std::lock_guard guard(m_mutex);
  const auto owner = m_owners.find(call.owner);
  const std::string* const name = owner != m_owners.end() ? owner->second : nullptr;
  Row* const last = m_rows.Last();
  if (last && FindsNothing(call) && FindsNothing(last->record) &&
      std::get<TraceCall>(last->record).owner == call.owner) {
    ++last->repeated;
    ++m_changes;
    return;
  }
  Add({std::move(kept), call.bytes.size(), 1, name});
}

void TraceLog::Keep(const TraceEvent& event) {
  const std::lock_guard guard(m_mutex);
  if (event.name == kTraceConnect)
    m_owners.clear(); // a new channel counts them anew
  else if (event.name == kTraceOwner)
    LearnOwner(event);
  Add({event, 0, 1, nullptr});
}

void TraceLog::LearnOwner(const TraceEvent& event) {
  std::uint64_t number = 0;
  if (ParseNumber(event.Field("number"), number))
    m_owners[number] = &*m_names.emplace(event.Field("name")).first;
}

void TraceLog::Add(Row row) {
  m_rows.Add(std::move(row));
  ++m_changes;
}

std::uint64_t TraceLog::Changes() const {
  const std::lock_guard guard(m_mutex);
  return m_changes;
}

RowRing<TraceLog::Row> TraceLog::Rows() const {
  const std::lock_guard guard(m_mutex);
  return m_rows;
}

void TraceLog::Visit(std::uint64_t from, const Visitor& visit) const {
  const std::lock_guard guard(m_mutex);
  for (std::uint64_t number = std::max(from, m_rows.First()); number < m_rows.End(); ++number)
    visit(number, *m_rows.At(number));
}

std::uint64_t TraceLog::First() const {
  const std::lock_guard guard(m_mutex);
  return m_rows.First();
}

TraceLog::Row TraceLog::At(std::uint64_t number) const {
  const std::lock_guard guard(m_mutex);
  const Row* const row = m_rows.At(number);
  return row ? *row : Row{TraceEvent(), 0, 1, nullptr};
}

void TraceLog::Clear() {
  const std::lock_guard guard(m_mutex);
  m_rows.Clear();
  ++m_changes;
}

} // namespace host
