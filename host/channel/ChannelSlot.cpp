#include "host/channel/ChannelSlot.h"

#include "host/channel/ChannelErrors.h"

#include <algorithm>
#include <new>

namespace host {
namespace {

std::int64_t AnswerOfNoChannel(ChannelOperation operation) {
  switch (operation) {
  case ChannelOperation::kLock:
    return kChannelLocked;
  case ChannelOperation::kUnlock:
    return kNotLocked;
  case ChannelOperation::kGetState:
  case ChannelOperation::kGetDirectoryEntryCount:
    return 0;
  default:
    return kNotOpen;
  }
}

} // namespace

bool ChannelSlot::Replace(std::unique_ptr<Channel> channel) {
  {
    const std::lock_guard guard(m_mutex);
    if (!m_users.empty())
      return false;
    channel = Exchange(std::move(channel));
  }
  return true; // the old one ends here, without the mutex: closing a link may take time
}

bool ChannelSlot::IsUsed() const {
  const std::lock_guard guard(m_mutex);
  return !m_users.empty();
}

bool ChannelSlot::IsConnecting() {
  return Inner() && ForwardingChannel::IsConnecting();
}

std::int32_t ChannelSlot::WaitUntilOpen() {
  return Inner() ? ForwardingChannel::WaitUntilOpen() : kNotOpen;
}

std::int32_t ChannelSlot::Lock(void* owner, std::uint32_t timeoutMs) {
  if (!Enter(owner))
    return kOutOfMemory;
  const std::int32_t result = ForwardingChannel::Lock(owner, timeoutMs);
  if (result != kChannelOk)
    Leave(owner);
  return result;
}

std::int32_t ChannelSlot::Unlock(void* owner) {
  const std::int32_t result = ForwardingChannel::Unlock(owner);
  // Whatever the answer is: an injected fault may deny a lock that has been given back.
  Leave(owner);
  return result;
}

void ChannelSlot::Around(ChannelCall& call) {
  if (Inner())
    call.Forward();
  else
    call.AnswerInstead(AnswerOfNoChannel(call.operation));
}

bool ChannelSlot::Enter(void* owner) {
  const std::lock_guard guard(m_mutex);
  try {
    m_users.push_back(owner);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

void ChannelSlot::Leave(void* owner) {
  const std::lock_guard guard(m_mutex);
  if (const auto user = std::find(m_users.begin(), m_users.end(), owner); user != m_users.end())
    m_users.erase(user);
}

} // namespace host
