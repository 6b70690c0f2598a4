#include "host/channel/stream/posix/DescriptorLink.h"

#include "host/support/SystemError.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace host {
namespace {

// The system does not tell when bytes have left, so it is asked this often while some are in flight.
constexpr std::chrono::milliseconds kAskInterval{5};
// Of a wait that only an event ends: nobody notices that it begins anew.
constexpr std::chrono::hours kLongestWait{1};

bool MeansLater(int error) {
  return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

} // namespace

Descriptor::~Descriptor() {
  if (m_number >= 0)
    close(m_number);
}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  std::swap(m_number, other.m_number);
  return *this;
}

Movement DescriptorLink::Move(std::string_view toSend, bool mayReceive, LinkClock::time_point until) {
  const bool maySend = toSend.size() > m_inFlight;
  const int events = (mayReceive ? POLLIN : 0) | (maySend ? POLLOUT : 0);
  // A descriptor that nothing is wanted of is not asked: a broken one would be ready at once, again and again.
  pollfd waits[] = {{events != 0 ? m_descriptor.Number() : -1, static_cast<short>(events), 0},
                    {static_cast<int>(WakeSignal().Native()), POLLIN, 0}};
  Movement movement;
  const int timeout = MillisecondsUntil(until, m_inFlight != 0 ? kAskInterval : kLongestWait);
  if (poll(waits, 2, timeout) < 0 && errno != EINTR) {
    movement.failure = SystemErrorText(errno);
    return movement;
  }
  if (waits[1].revents != 0)
    WakeSignal().Clear();
  // What has arrived comes before the discovery that nothing can be sent any more.
  if (waits[0].revents != 0 && mayReceive)
    Receive(movement);
  if (waits[0].revents != 0 && maySend && movement.failure.empty())
    Send(toSend.substr(m_inFlight), movement);
  // The same request for sockets (bytes that are not acknowledged) and terminals; a socket that was reset answers
  // with what was lost.
  int left = 0;
  if (m_inFlight != 0 && ioctl(m_descriptor.Number(), TIOCOUTQ, &left) == 0) {
    const std::size_t inFlight = std::min(m_inFlight, static_cast<std::size_t>(left));
    movement.sent = std::exchange(m_inFlight, inFlight) - inFlight;
  }
  return movement;
}

void DescriptorLink::Receive(Movement& movement) {
  const auto count = read(m_descriptor.Number(), m_received.data(), m_received.size());
  if (count > 0)
    movement.received = {m_received.data(), static_cast<std::size_t>(count)};
  else if (count == 0)
    movement.failure = EndOfStream();
  else if (!MeansLater(errno))
    movement.failure = SystemErrorText(errno);
}

void DescriptorLink::Send(std::string_view bytes, Movement& movement) {
  const auto count = Write(bytes.data(), bytes.size());
  if (count > 0)
    m_inFlight += static_cast<std::size_t>(count);
  else if (count < 0 && !MeansLater(errno))
    movement.failure = SystemErrorText(errno);
}

} // namespace host
