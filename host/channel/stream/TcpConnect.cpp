#include "host/channel/stream/TcpConnect.h"

#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace host {
namespace {

using FoundAddresses = tl::expected<Addresses, LinkFailure>;

// A look-up that is under way, shared by the thread that does it and the one that waits.
struct LookUpState {
  Signal done;
  std::mutex mutex; // guards the result
  std::optional<FoundAddresses> result;
};

// A system's look-up cannot be ended, and may take longer than a user waits. So it has a thread of its own, which is
// left alone when nobody waits any more: it owns all that it touches and ends with the look-up.
std::shared_ptr<LookUpState> StartLookUp(const TcpAddress& address) {
  auto state = std::make_shared<LookUpState>();
  std::thread([state, address] {
    FoundAddresses found;
    try {
      found = LookUp(address);
    } catch (...) {
      found = tl::unexpected<LinkFailure>("Out of memory"); // short enough to need none
    }
    const std::lock_guard guard(state->mutex);
    state->result = std::move(found);
    state->done.Raise();
  }).detach();
  return state;
}

FoundAddresses LookUpInTime(const TcpAddress& address, const Signal& end, LinkClock::time_point deadline) {
  const auto state = StartLookUp(address);
  if (WaitForEither(end, state->done, deadline))
    return tl::unexpected(Ended());
  const std::lock_guard guard(state->mutex);
  if (!state->result)
    return tl::unexpected("No answer to the look-up of " + address.host);
  return std::move(*state->result);
}

} // namespace

LinkOpened ConnectTcp(const TcpAddress& address, const Signal& end,
                      const std::function<LinkOpened(const SocketAddress&, LinkClock::time_point)>& connect) {
  const LinkClock::time_point deadline = LinkClock::now() + kConnectTime;
  const FoundAddresses addresses = LookUpInTime(address, end, deadline);
  if (!addresses)
    return tl::unexpected(addresses.error());
  LinkOpened opened = tl::unexpected(NoAnswer());
  for (std::size_t i = 0; i < addresses->size(); ++i) {
    const auto now = LinkClock::now();
    const auto share = (deadline - now) / static_cast<int>(addresses->size() - i);
    opened = connect((*addresses)[i], now + share);
    if (opened)
      break;
  }
  return opened;
}

LinkFailure NoAnswer() {
  return "No answer within " + std::to_string(kConnectTime.count()) + " s";
}

} // namespace host
