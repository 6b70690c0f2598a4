// A byte stream of the system's: a TCP connection or a serial port. Bodies: win32/ and posix/.
#pragma once

#include "host/channel/stream/StreamSettings.h"
#include "host/support/Signal.h"

#include <tl/expected.hpp>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace host {

// Why a link could not be made, or has ended. For users, mostly in the system's words.
using LinkFailure = std::string;

using LinkOpened = tl::expected<void, LinkFailure>;

using LinkClock = std::chrono::steady_clock;

// How long the making of a connection may take.
inline constexpr std::chrono::seconds kConnectTime{10};

// What one call of `Link::Move` has done. All of it counts, also in front of a failure.
struct Movement {
  std::size_t sent = 0;      // bytes from the front of what was to be sent
  std::string_view received; // the link's own, until the next call
  LinkFailure failure;       // not empty: the link has ended for good
};

// Belongs to one thread, the one that drives it. The destructor gives the system's part back at once, together with
// whatever has not been sent.
class Link {
public:
  // Raising the signal, which must outlive the link, ends the wait of the call that is under way, or of the next.
  explicit Link(Signal& wake) : m_wake(wake) {}
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;
  virtual ~Link() = default;

  // 1. Makes the connection, within kConnectTime. A raised signal ends the attempt.
  virtual LinkOpened Open() = 0;

  // 2. Again and again: waits until something has moved, the link has ended, the signal is raised, which it clears, or
  // `until` has come.
  //
  // `toSend` begins with the first byte that no call has reported as sent. Its bytes must stay where they are until
  // then, or until the link ends: the system may be reading them between two calls. Sent are those that closing the
  // link cannot lose any more, as far as the system tells.
  // Without `mayReceive` bytes are left to the system; those that were asked for before may still come.
  virtual Movement Move(std::string_view toSend, bool mayReceive, LinkClock::time_point until) = 0;

protected:
  Signal& WakeSignal() const { return m_wake; }

private:
  Signal& m_wake;
};

// Makes a link that is not open yet.
using LinkMaker = std::function<std::unique_ptr<Link>(Signal& wake)>;

std::unique_ptr<Link> MakeTcpLink(const TcpAddress& address, Signal& wake);
std::unique_ptr<Link> MakeSerialLink(const SerialLine& line, const SerialOptions& options, Signal& wake);

// --- for the bodies

// Whole milliseconds until then, rounded up and at most `longest`; 0 when it has passed.
int MillisecondsUntil(LinkClock::time_point then, std::chrono::milliseconds longest);

} // namespace host
