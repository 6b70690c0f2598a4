#include "host/channel/stream/StreamChannel.h"

#include "host/channel/ChannelErrors.h"

#include <utility>

namespace host {

StreamChannel::StreamChannel(std::string description, std::string configuration, LinkMaker makeLink)
    : ChannelSource(std::move(description), std::move(configuration)), m_makeLink(std::move(makeLink)),
      m_thread(&StreamChannel::Run, this) {}

StreamChannel::~StreamChannel() {
  {
    std::unique_lock guard(m_mutex);
    m_changed.wait_for(guard, kFarewellTime, [this] { return m_state != State::kOpen || m_unsent == 0; });
    m_ending = true;
  }
  m_wake.Raise();
  m_thread.join();
}

std::int32_t StreamChannel::WaitUntilOpen() {
  std::unique_lock guard(m_mutex);
  m_changed.wait(guard, [this] { return m_state != State::kConnecting; });
  return IsOpen() ? kChannelOk : kNotOpen;
}

std::int32_t StreamChannel::WaitUntilSent() {
  std::unique_lock guard(m_mutex);
  bool moving = true;
  while (moving && IsOpen() && m_unsent != 0) {
    const auto moved = [this, before = m_unsent] { return m_unsent != before || !IsOpen(); };
    moving = m_changed.wait_for(guard, kPatience, moved);
  }
  if (m_unsent == 0 && !m_refused)
    return kChannelOk;
  return IsOpen() ? kDataNotTaken : kNotOpen;
}

bool StreamChannel::HasEnded() {
  const std::lock_guard guard(m_mutex);
  return m_state == State::kClosed && m_incoming.Size() == 0;
}

const char* StreamChannel::DescribeError(std::int64_t code) {
  if (code == kNotOpen && m_state == State::kClosed)
    return m_closedBecause.c_str();
  return ChannelSource::DescribeError(code);
}

tl::expected<std::size_t, std::int32_t> StreamChannel::ReceiveBytes(char* buffer, std::size_t capacity) {
  std::unique_lock guard(m_mutex);
  const bool wasFull = m_incoming.Size() >= kReceiveCapacity;
  const std::size_t received = m_incoming.Take(buffer, capacity);
  const bool atEnd = m_incoming.Size() == 0 && received == 0 && !IsOpen();
  guard.unlock();
  if (wasFull)
    m_wake.Raise();
  if (atEnd)
    return tl::unexpected(kNotOpen);
  return received;
}

std::int32_t StreamChannel::SendBytes(std::string_view bytes) {
  std::unique_lock guard(m_mutex);
  const auto fits = [&] { return bytes.size() <= kSendCapacity - m_unsent; };
  m_changed.wait_for(guard, kRoomTime, [&] { return fits() || !IsOpen(); });
  if (!IsOpen() || !fits()) {
    m_refused = true;
    return IsOpen() ? kDataNotTaken : kNotOpen;
  }
  m_outgoing.append(bytes);
  m_unsent += bytes.size();
  guard.unlock();
  m_wake.Raise();
  return kChannelOk;
}

tl::expected<DeviceFiles*, std::int32_t> StreamChannel::Files() {
  return tl::unexpected(IsOpen() ? kNoDeviceFiles : kNotOpen);
}

void StreamChannel::Run() noexcept {
  LinkFailure failure;
  try {
    failure = OpenAndDrive();
  } catch (...) {
    failure = "Out of memory"; // short enough to need none
  }
  {
    const std::lock_guard guard(m_mutex);
    m_closedBecause = std::move(failure);
    m_state = State::kClosed;
  }
  m_changed.notify_all();
}

// The link ends with it, before the state says so: who sees that may want the port.
LinkFailure StreamChannel::OpenAndDrive() {
  const std::unique_ptr<Link> link = m_makeLink(m_wake);
  if (auto opened = link->Open(); !opened)
    return std::move(opened.error());
  {
    const std::lock_guard guard(m_mutex);
    m_state = State::kOpen;
    m_hasBeenOpen = true;
  }
  m_changed.notify_all();
  return Drive(*link);
}

LinkFailure StreamChannel::Drive(Link& link) {
  LinkFailure failure;
  for (bool mayReceive = true; failure.empty() && Prepare(mayReceive);) {
    Movement movement = link.Move(std::string_view(m_sending).substr(m_sent), mayReceive, LinkClock::time_point::max());
    Settle(movement);
    failure = std::move(movement.failure);
  }
  return failure;
}

bool StreamChannel::Prepare(bool& mayReceive) {
  const std::lock_guard guard(m_mutex);
  if (m_sent == m_sending.size()) {
    m_sending.clear();
    m_sending.swap(m_outgoing);
    m_sent = 0;
  }
  mayReceive = m_incoming.Size() < kReceiveCapacity;
  return !m_ending;
}

void StreamChannel::Settle(const Movement& movement) {
  {
    const std::lock_guard guard(m_mutex);
    m_incoming.Append(movement.received);
    m_sent += movement.sent;
    m_unsent -= movement.sent;
  }
  if (movement.sent != 0)
    m_changed.notify_all();
}

} // namespace host
