// How a TCP connection is made, as far as it is the same on all systems.
#pragma once

#include "host/channel/stream/Link.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <vector>

namespace host {

// One of the addresses that a name stands for: a `sockaddr`.
struct SocketAddress {
  alignas(8) std::array<char, 128> bytes{};
  std::size_t size = 0;
  int family = 0;
};

using Addresses = std::vector<SocketAddress>;

// What a system's getaddrinfo has found.
template <class AddressInfo>
Addresses CopyAddresses(const AddressInfo* list) {
  Addresses found;
  for (; list; list = list->ai_next) {
    SocketAddress copy;
    copy.family = list->ai_family;
    copy.size = std::min<std::size_t>(list->ai_addrlen, copy.bytes.size());
    std::memcpy(copy.bytes.data(), list->ai_addr, copy.size);
    found.push_back(copy);
  }
  return found;
}

// Looks the host up and passes its addresses to `connect`, one after the other until one answers; each has its share of
// kConnectTime. `connect` gets the address and the time at which it is to give up. Ends early when `end` is raised.
LinkOpened ConnectTcp(const TcpAddress& address, const Signal& end,
                      const std::function<LinkOpened(const SocketAddress&, LinkClock::time_point)>& connect);

// A device that does not answer its system for so long is gone. As far as the system can be told.
inline constexpr std::chrono::seconds kGoneAfter{20};

// For an attempt that was ended; nobody sees it.
inline LinkFailure Ended() {
  return "Ended";
}
// "No answer within 10 s".
LinkFailure NoAnswer();

// --- the system part

// Looks a host up; may take as long as the system likes. [any thread]
tl::expected<Addresses, LinkFailure> LookUp(const TcpAddress& address);
// Waits for one of two signals until then. True: `end` is raised.
bool WaitForEither(const Signal& end, const Signal& other, LinkClock::time_point deadline);

} // namespace host
