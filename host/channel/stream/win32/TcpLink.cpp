#include <winsock2.h> // before windows.h

#include "host/channel/stream/TcpConnect.h"
#include "host/channel/stream/win32/OverlappedLink.h"
#include "host/support/SystemError.h"

#include <mstcpip.h>
#include <utility>
#include <ws2tcpip.h>

namespace host {
namespace {

constexpr int kParting = 50; // ms

// Of the system's; the headers do not have them yet.
constexpr int kKeepAliveCount = 16;   // TCP_KEEPCNT
constexpr int kRetransmitSeconds = 5; // TCP_MAXRT

LinkFailure LastFailure() {
  return SystemErrorText(WSAGetLastError());
}

// The sockets of a process work as long as one exists.
class Winsock {
public:
  Winsock() : m_error(WSAStartup(MAKEWORD(2, 2), &m_data)) {}
  ~Winsock() {
    if (m_error == 0)
      WSACleanup();
  }
  Winsock(const Winsock&) = delete;
  Winsock& operator=(const Winsock&) = delete;

private:
  WSADATA m_data;
  const int m_error; // shows again in the first call that needs a socket
};

class Socket {
public:
  explicit Socket(SOCKET socket = INVALID_SOCKET) : m_socket(socket) {}
  ~Socket() {
    if (m_socket != INVALID_SOCKET)
      closesocket(m_socket);
  }
  Socket(Socket&& other) noexcept : m_socket(std::exchange(other.m_socket, INVALID_SOCKET)) {}
  Socket& operator=(Socket&& other) noexcept {
    std::swap(m_socket, other.m_socket);
    return *this;
  }
  SOCKET Get() const { return m_socket; }
  bool IsOpen() const { return m_socket != INVALID_SOCKET; }

private:
  SOCKET m_socket;
};

// Commands are short and wait for answers; and a device that was switched off shall not look open for hours. A device
// that is busy with itself for some seconds answers nothing either, so it has kGoneAfter.
void SetOptions(const Socket& socket) {
  const BOOL on = TRUE;
  setsockopt(socket.Get(), IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
  tcp_keepalive keepalive = {1, 5000, 5000}; // ms
  DWORD ignored = 0;
  WSAIoctl(socket.Get(), SIO_KEEPALIVE_VALS, &keepalive, sizeof keepalive, nullptr, 0, &ignored, nullptr, nullptr);
  const DWORD attempts = 3; // unknown before Windows 10, which makes ten of it
  setsockopt(socket.Get(), IPPROTO_TCP, kKeepAliveCount, reinterpret_cast<const char*>(&attempts), sizeof attempts);
  // The same for bytes that it does not acknowledge.
  const auto seconds = static_cast<DWORD>(kGoneAfter.count());
  setsockopt(socket.Get(), IPPROTO_TCP, kRetransmitSeconds, reinterpret_cast<const char*>(&seconds), sizeof seconds);
}

class TcpLink : public OverlappedLink {
public:
  TcpLink(const TcpAddress& address, Signal& wake) : OverlappedLink(wake), m_address(address) {}

  ~TcpLink() override {
    if (!m_socket.IsOpen())
      return;
    EndOperations(reinterpret_cast<HANDLE>(m_socket.Get()));
    Part();
  }

  LinkOpened Open() override {
    return ConnectTcp(m_address, WakeSignal(), [this](const SocketAddress& address, LinkClock::time_point deadline) {
      return Connect(address, deadline);
    });
  }

private:
  LinkOpened Connect(const SocketAddress& address, LinkClock::time_point deadline) {
    Signal connected; // outlives the socket that raises it
    Socket made(WSASocketW(address.family, SOCK_STREAM, IPPROTO_TCP, nullptr, 0,
                           WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT));
    const auto event = reinterpret_cast<WSAEVENT>(connected.Native());
    if (!made.IsOpen() || WSAEventSelect(made.Get(), event, FD_CONNECT) != 0)
      return tl::unexpected(LastFailure());
    const auto* const name = reinterpret_cast<const sockaddr*>(address.bytes.data());
    if (connect(made.Get(), name, static_cast<int>(address.size)) != 0 && WSAGetLastError() != WSAEWOULDBLOCK)
      return tl::unexpected(LastFailure());
    if (WaitForEither(WakeSignal(), connected, deadline))
      return tl::unexpected(Ended());
    WSANETWORKEVENTS events = {};
    if (WSAEnumNetworkEvents(made.Get(), event, &events) != 0)
      return tl::unexpected(LastFailure());
    if ((events.lNetworkEvents & FD_CONNECT) == 0)
      return tl::unexpected(NoAnswer());
    if (const int error = events.iErrorCode[FD_CONNECT_BIT]; error != 0)
      return tl::unexpected(SystemErrorText(error));
    WSAEventSelect(made.Get(), reinterpret_cast<WSAEVENT>(m_end.Native()), FD_CLOSE);
    SetOptions(made);
    m_socket = std::move(made);
    return {};
  }

  // Closing a socket while something arrives would also cancel what the system has still to send: so the end is told
  // first, and what comes until the other side's end is thrown away.
  void Part() {
    u_long blocking = 0;
    const DWORD patience = kParting;
    shutdown(m_socket.Get(), SD_SEND);
    WSAEventSelect(m_socket.Get(), nullptr, 0); // a socket with events cannot wait
    ioctlsocket(m_socket.Get(), static_cast<long>(FIONBIO), &blocking);
    setsockopt(m_socket.Get(), SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&patience), sizeof patience);
    char ignored[4096];
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kParting);
    while (recv(m_socket.Get(), ignored, sizeof ignored, 0) > 0 && std::chrono::steady_clock::now() < end) {
    }
  }

  DWORD StartReceiving(char* buffer, DWORD size, OVERLAPPED* record) override {
    WSABUF piece = {size, buffer};
    DWORD flags = 0;
    const int result = WSARecv(m_socket.Get(), &piece, 1, nullptr, &flags, record, nullptr);
    return result == 0 || WSAGetLastError() == WSA_IO_PENDING ? 0 : static_cast<DWORD>(WSAGetLastError());
  }
  DWORD StartSending(const char* bytes, DWORD size, OVERLAPPED* record) override {
    WSABUF piece = {size, const_cast<char*>(bytes)};
    const int result = WSASend(m_socket.Get(), &piece, 1, nullptr, 0, record, nullptr);
    return result == 0 || WSAGetLastError() == WSA_IO_PENDING ? 0 : static_cast<DWORD>(WSAGetLastError());
  }
  OperationResult Result(OVERLAPPED* record) override {
    OperationResult result;
    DWORD flags = 0;
    if (WSAGetOverlappedResult(m_socket.Get(), record, &result.count, FALSE, &flags) == FALSE)
      result = {0, static_cast<DWORD>(WSAGetLastError())};
    return result;
  }
  LinkFailure EndOfStream() override { return "Connection closed by the device"; }

  // Wine may lose the end that comes in the moment in which a receive begins.
  HANDLE EndEvent() const override { return reinterpret_cast<HANDLE>(m_end.Native()); }
  LinkFailure CheckEnd() override {
    m_end.Clear();
    char byte = 0;
    const int count = recv(m_socket.Get(), &byte, 1, MSG_PEEK);
    if (count == 0)
      return EndOfStream();
    return count > 0 || WSAGetLastError() == WSAEWOULDBLOCK ? LinkFailure() : LastFailure();
  }

  const Winsock m_winsock; // before the socket
  const TcpAddress m_address;
  Signal m_end; // outlives the socket that raises it
  Socket m_socket;
};

} // namespace

tl::expected<Addresses, LinkFailure> LookUp(const TcpAddress& address) {
  const Winsock winsock;
  addrinfo hints = {};
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* list = nullptr;
  const int error = getaddrinfo(address.host.c_str(), std::to_string(address.port).c_str(), &hints, &list);
  if (error != 0)
    return tl::unexpected(SystemErrorText(error));
  const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(list, freeaddrinfo);
  return CopyAddresses(list);
}

bool WaitForEither(const Signal& end, const Signal& other, LinkClock::time_point deadline) {
  const HANDLE handles[] = {reinterpret_cast<HANDLE>(end.Native()), reinterpret_cast<HANDLE>(other.Native())};
  const auto timeout = static_cast<DWORD>(MillisecondsUntil(deadline, kConnectTime));
  return WaitForMultipleObjects(2, handles, FALSE, timeout) == WAIT_OBJECT_0;
}

std::unique_ptr<Link> MakeTcpLink(const TcpAddress& address, Signal& wake) {
  return std::make_unique<TcpLink>(address, wake);
}

} // namespace host
