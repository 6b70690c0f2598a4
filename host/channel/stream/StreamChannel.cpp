#include "host/channel/stream/StreamChannel.h"

#include "host/channel/ChannelErrors.h"

#include <utility>

namespace host {

StreamChannel::StreamChannel(std::string description, std::string configuration, LinkMaker makeLink,
                             const LineOptions& options)
    : ChannelSource(std::move(description), std::move(configuration)), m_makeLink(std::move(makeLink)),
      m_reconnects(options.reconnect), m_pace(options.pace), m_thread(&StreamChannel::Run, this) {}

StreamChannel::~StreamChannel() {
  {
    std::unique_lock guard(m_mutex);
    m_changed.wait_for(guard, kFarewellTime, [this] { return m_state != State::kOpen || m_unsent == 0; });
    m_ending = true;
  }
  m_changed.notify_all();
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
  while (moving && IsUsable() && m_unsent != 0) {
    const auto moved = [this, before = m_unsent] { return m_unsent != before || !IsUsable(); };
    moving = m_changed.wait_for(guard, kPatience + m_pace.LongestPause(), moved);
  }
  if (m_lost)
    return kLostWithLine;
  if (m_unsent == 0 && !m_refused)
    return kChannelOk;
  return IsOpen() ? kDataNotTaken : kNotOpen;
}

bool StreamChannel::HasEnded() {
  const std::lock_guard guard(m_mutex);
  return m_state == State::kClosed && m_incoming.Size() == 0;
}

void StreamChannel::WatchLine(LineWatcher watcher) {
  auto shared = std::make_shared<const LineWatcher>(std::move(watcher));
  const std::lock_guard guard(m_mutex);
  m_watcher = std::move(shared);
}

const char* StreamChannel::DescribeError(std::int64_t code) {
  const State state = m_state;
  if (code == kNotOpen && (state == State::kClosed || state == State::kLost))
    return m_reason;
  return ChannelSource::DescribeError(code);
}

tl::expected<std::size_t, std::int32_t> StreamChannel::ReceiveBytes(char* buffer, std::size_t capacity) {
  const std::lock_guard guard(m_mutex);
  const bool wasFull = m_incoming.Size() >= kReceiveCapacity;
  const std::size_t received = m_incoming.Take(buffer, capacity);
  if (wasFull && IsOpen())
    m_wake.Raise();
  if (received == 0 && m_incoming.Size() == 0 && !IsUsable())
    return tl::unexpected(kNotOpen);
  return received;
}

std::int32_t StreamChannel::SendBytes(std::string_view bytes) {
  std::unique_lock guard(m_mutex);
  const auto fits = [&] { return bytes.size() <= kSendCapacity - m_unsent; };
  m_changed.wait_for(guard, kRoomTime, [&] { return fits() || !IsUsable(); });
  if (!IsUsable() || !fits()) {
    m_refused = true;
    return IsUsable() ? kDataNotTaken : kNotOpen;
  }
  m_outgoing.append(bytes);
  m_unsent += bytes.size();
  if (IsOpen())
    m_wake.Raise();
  return kChannelOk;
}

tl::expected<DeviceFiles*, std::int32_t> StreamChannel::Files() {
  return tl::unexpected(IsUsable() ? kNoDeviceFiles : kNotOpen);
}

void StreamChannel::Run() noexcept {
  LinkFailure failure;
  try {
    do
      failure = OpenAndDrive();
    while (m_reconnects && m_hasBeenOpen && !failure.empty() && AwaitNextAttempt(failure));
  } catch (...) {
    failure = "Out of memory"; // short enough to need none
  }
  Become(State::kClosed, std::move(failure));
}

// The link ends with it, before the state says so: who sees that may want the port.
LinkFailure StreamChannel::OpenAndDrive() {
  const std::unique_ptr<Link> link = m_makeLink(m_wake);
  m_wake.Clear(); // the last link may have left it raised
  {
    const std::lock_guard guard(m_mutex);
    if (m_ending)
      return {};
  }
  if (auto opened = link->Open(); !opened)
    return std::move(opened.error());
  BecomeOpen();
  return Drive(*link);
}

void StreamChannel::BecomeOpen() {
  const bool again = m_state == State::kLost;
  Become(State::kOpen, {});
  if (again)
    Tell(LineEvent::kOpenAgain, {});
}

bool StreamChannel::AwaitNextAttempt(const LinkFailure& failure) {
  const bool isNews = m_state == State::kOpen;
  Become(State::kLost, failure + "; trying again");
  if (isNews)
    Tell(LineEvent::kLost, failure);
  std::unique_lock guard(m_mutex);
  return !m_changed.wait_for(guard, m_pause.Next(), [this] { return m_ending; });
}

void StreamChannel::Tell(LineEvent event, const LinkFailure& reason) {
  std::shared_ptr<const LineWatcher> watcher;
  {
    const std::lock_guard guard(m_mutex);
    watcher = m_watcher;
  }
  if (watcher)
    (*watcher)(event, reason);
}

void StreamChannel::Become(State state, LinkFailure reason) noexcept {
  {
    const std::lock_guard guard(m_mutex);
    try {
      m_reason = m_reasons.insert(std::move(reason)).first->c_str();
    } catch (...) {
      m_reason = "Out of memory";
    }
    if (state == State::kLost && m_state == State::kOpen) {
      // Half a command would be worse for the device than none.
      m_lost = m_lost || m_unsent != 0;
      m_unsent = 0;
      m_sent = 0;
      m_sending.clear();
      m_outgoing.clear();
    }
    m_hasBeenOpen = m_hasBeenOpen || state == State::kOpen;
    m_state = state;
  }
  m_changed.notify_all();
}

LinkFailure StreamChannel::Drive(Link& link) {
  LinkFailure failure;
  Pacer pacer(m_pace);
  for (bool mayReceive = true; failure.empty() && Prepare(mayReceive);) {
    const std::string_view unsent = std::string_view(m_sending).substr(m_sent);
    const std::string_view now = pacer.LetThrough(unsent, LinkClock::now());
    Movement movement = link.Move(now, mayReceive, pacer.NextTime(unsent));
    pacer.Sent(movement.sent);
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
  if (!movement.received.empty())
    m_pause.Reset();
  if (movement.sent != 0)
    m_changed.notify_all();
}

} // namespace host
