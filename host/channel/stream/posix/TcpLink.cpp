#include "host/channel/stream/TcpConnect.h"
#include "host/channel/stream/posix/DescriptorLink.h"
#include "host/support/SystemError.h"

#include <cerrno>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

namespace host {
namespace {

template <class Value>
void SetOption(const Descriptor& socket, int level, int option, Value value) {
  setsockopt(socket.Number(), level, option, &value, sizeof value); // all of them are wishes
}

// Commands are short and wait for answers; and a device that was switched off shall not look open for hours. A device
// that is busy with itself for some seconds answers nothing either, so it has kGoneAfter.
void SetOptions(const Descriptor& socket) {
  SetOption(socket, IPPROTO_TCP, TCP_NODELAY, 1);
  SetOption(socket, SOL_SOCKET, SO_KEEPALIVE, 1);
  SetOption(socket, IPPROTO_TCP, TCP_KEEPIDLE, 5);  // seconds
  SetOption(socket, IPPROTO_TCP, TCP_KEEPINTVL, 5); // seconds
  SetOption(socket, IPPROTO_TCP, TCP_KEEPCNT, 3);
  // The same for bytes that it does not acknowledge, after which the system asks nothing.
  SetOption(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, static_cast<int>(std::chrono::milliseconds(kGoneAfter).count()));
}

class TcpLink : public DescriptorLink {
public:
  TcpLink(const TcpAddress& address, Signal& wake) : DescriptorLink(wake), m_address(address) {}

  LinkOpened Open() override {
    return ConnectTcp(m_address, WakeSignal(), [this](const SocketAddress& address, LinkClock::time_point deadline) {
      return Connect(address, deadline);
    });
  }

private:
  LinkOpened Connect(const SocketAddress& address, LinkClock::time_point deadline) {
    Descriptor made(socket(address.family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_TCP));
    if (!made.IsOpen())
      return tl::unexpected(SystemErrorText(errno));
    const auto* const name = reinterpret_cast<const sockaddr*>(address.bytes.data());
    if (connect(made.Number(), name, static_cast<socklen_t>(address.size)) != 0 && errno != EINPROGRESS)
      return tl::unexpected(SystemErrorText(errno));
    pollfd waits[] = {{made.Number(), POLLOUT, 0}, {static_cast<int>(WakeSignal().Native()), POLLIN, 0}};
    int ready = 0;
    do
      ready = poll(waits, 2, MillisecondsUntil(deadline, kConnectTime));
    while (ready < 0 && errno == EINTR);
    if (ready <= 0)
      return tl::unexpected(ready == 0 ? NoAnswer() : SystemErrorText(errno));
    if (waits[1].revents != 0)
      return tl::unexpected(Ended());
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(made.Number(), SOL_SOCKET, SO_ERROR, &error, &size);
    if (error != 0)
      return tl::unexpected(SystemErrorText(error));
    SetOptions(made);
    Attach(std::move(made));
    return {};
  }

  std::ptrdiff_t Write(const char* bytes, std::size_t size) override {
    return send(Attached().Number(), bytes, size, MSG_NOSIGNAL);
  }
  const char* EndOfStream() const override { return "Connection closed by the device"; }

  const TcpAddress m_address;
};

} // namespace

tl::expected<Addresses, LinkFailure> LookUp(const TcpAddress& address) {
  addrinfo hints = {};
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* list = nullptr;
  const int error = getaddrinfo(address.host.c_str(), std::to_string(address.port).c_str(), &hints, &list);
  if (error != 0)
    return tl::unexpected(error == EAI_SYSTEM ? SystemErrorText(errno) : LinkFailure(gai_strerror(error)));
  const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(list, freeaddrinfo);
  return CopyAddresses(list);
}

bool WaitForEither(const Signal& end, const Signal& other, LinkClock::time_point deadline) {
  pollfd waits[] = {{static_cast<int>(end.Native()), POLLIN, 0}, {static_cast<int>(other.Native()), POLLIN, 0}};
  while (poll(waits, 2, MillisecondsUntil(deadline, kConnectTime)) < 0 && errno == EINTR) {
  }
  return waits[0].revents != 0;
}

std::unique_ptr<Link> MakeTcpLink(const TcpAddress& address, Signal& wake) {
  return std::make_unique<TcpLink>(address, wake);
}

} // namespace host
