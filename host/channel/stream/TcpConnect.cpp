#include "host/channel/stream/TcpConnect.h"

#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace host {
namespace {

using std::chrono::steady_clock;

// A look-up that is under way, shared by the thread that does it and the one that waits.
struct LookUpState {
  Signal done;
  std::mutex mutex; // guards the result
  std::optional<Addresses> result;
};

// A system's look-up cannot be ended, and may take longer than a user waits. So it has a thread of its own, which is
// left alone when nobody waits any more: it owns all that it touches and ends with the look-up.
std::shared_ptr<LookUpState> StartLookUp(const TcpAddress& address) {
  auto state = std::make_shared<LookUpState>();
  std::thread([state, address] {
    Addresses found;
    try {
      found = LookUp(address);
    } catch (...) {
      found.failure = "Out of memory";
    }
    const std::lock_guard guard(state->mutex);
    state->result = std::move(found);
    state->done.Raise();
  }).detach();
  return state;
}

Addresses LookUpInTime(const TcpAddress& address, const Signal& end, ConnectDeadline deadline) {
  const auto state = StartLookUp(address);
  if (WaitForEither(end, state->done, deadline))
    return {{}, kEnded};
  const std::lock_guard guard(state->mutex);
  return state->result ? std::move(*state->result) : Addresses{{}, "No answer to the look-up of " + address.host};
}

} // namespace

LinkFailure ConnectTcp(const TcpAddress& address, const Signal& end,
                       const std::function<LinkFailure(const SocketAddress&, ConnectDeadline)>& connect) {
  const ConnectDeadline deadline = steady_clock::now() + kConnectTime;
  const Addresses addresses = LookUpInTime(address, end, deadline);
  LinkFailure failure = addresses.failure;
  for (std::size_t i = 0; i < addresses.all.size(); ++i) {
    const auto now = steady_clock::now();
    const auto share = (deadline - now) / static_cast<int>(addresses.all.size() - i);
    failure = connect(addresses.all[i], now + share);
    if (failure.empty())
      break;
  }
  return failure;
}

LinkFailure NoAnswer() {
  return "No answer within " + std::to_string(kConnectTime.count()) + " s";
}

int MillisecondsUntil(ConnectDeadline deadline) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - steady_clock::now()).count();
  return left > 0 ? static_cast<int>(left) : 0;
}

} // namespace host
