#include "host/notes/ChannelUse.h"

#include "host/channel/ChannelErrors.h"

#include <new>
#include <utility>

namespace host {
namespace {

bool MovesSomething(ChannelOperation operation) {
  return operation != ChannelOperation::kLock && operation != ChannelOperation::kUnlock &&
         operation != ChannelOperation::kGetState && kChannelOperations[IndexOf(operation)].canFail;
}

// The call matters more than what is noted about it.
template <class Work>
void Note(const Work& work) {
  try {
    work();
  } catch (const std::bad_alloc&) {
  }
}

} // namespace

void ChannelUse::Reset() {
  const std::lock_guard guard(m_mutex);
  m_counts = {};
}

ChannelCounts ChannelUse::Counts() const {
  const std::lock_guard guard(m_mutex);
  return m_counts;
}

std::optional<ChannelUse::Hold> ChannelUse::Holder() const {
  const std::lock_guard guard(m_mutex);
  return m_hold;
}

ChannelUse::WallClock::time_point ChannelUse::Released() const {
  const std::lock_guard guard(m_mutex);
  return m_released;
}

std::string ChannelUse::NameOf(const void* owner) const {
  const std::lock_guard guard(m_mutex);
  const auto known = m_names.find(owner);
  return known != m_names.end() ? known->second : std::string();
}

void ChannelUse::LearnOwner(const std::string& client, const void* owner) {
  const std::lock_guard guard(m_mutex);
  m_names.insert_or_assign(owner, client);
}

void ChannelUse::Count(const std::string& client, const ChannelCall& call) {
  const std::lock_guard guard(m_mutex);
  if (call.operation == ChannelOperation::kUnlock)
    Unlock(call.arguments.owner); // whatever the answer is: an injected fault may deny what was done
  else if (call.operation == ChannelOperation::kLock && call.answer == kChannelOk)
    Lock(client, call.arguments.owner);
  else if (MovesSomething(call.operation))
    Move(call);
}

void ChannelUse::Move(const ChannelCall& call) {
  const bool done = call.answer == kChannelOk;
  ++m_counts.calls;
  m_counts.failed += done ? 0 : 1;
  switch (call.operation) {
  case ChannelOperation::kReceive:
    m_counts.received += call.moved ? *call.moved : 0;
    break;
  case ChannelOperation::kTransmit:
    m_counts.sent += call.moved ? *call.moved : done ? call.arguments.bytes.size() : 0;
    break;
  case ChannelOperation::kTransmitFileFromMemory:
  case ChannelOperation::kTransmitFile:
    m_counts.files += done ? 1 : 0;
    break;
  default:
    break;
  }
}

// Between one holder's last unlock and the note of it, the next one may have come.
void ChannelUse::Lock(const std::string& client, const void* owner) {
  if (m_hold && m_holder == owner) {
    ++m_depth;
    return;
  }
  m_hold = Hold{client, WallClock::now(), ++m_holds};
  m_holder = owner;
  m_depth = 1;
}

void ChannelUse::Unlock(const void* owner) {
  if (!m_hold || m_holder != owner || --m_depth != 0)
    return;
  m_hold.reset();
  m_released = WallClock::now();
}

void ClientPort::Around(ChannelCall& call) {
  Note([&] {
    if (call.operation == ChannelOperation::kLock)
      m_use.LearnOwner(m_client, call.arguments.owner);
  });
  call.Forward();
  Note([&] { m_use.Count(m_client, call); });
}

} // namespace host
