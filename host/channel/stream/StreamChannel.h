// A channel over a raw byte stream.
//
// A thread of the channel's drives the link, so that no operation ever waits for the device:
//
//   any thread                       the channel's thread
//   --------------------------------------------------------------------------------------------
//   constructor: starts the thread   opens the link: kConnecting -> kOpen, or -> kClosed
//   SendBytes: m_outgoing grows,     swaps m_outgoing into m_sending when that is used up, and
//     the link is woken                moves from there without the lock; counts m_unsent down
//   ReceiveBytes: m_incoming         m_incoming grows; at its bound, receiving stops until
//     shrinks                          ReceiveBytes wakes the link
//   destructor: sets m_ending,       ends the link on every way out, then says kClosed
//     wakes the link, joins
//
// The state only goes forward. Why it is kClosed is written before it is, and never again; so both can be read without
// the lock. Two blocking threads, one for each direction, would need no waking, but a blocked call cannot be ended
// alike on all systems.
#pragma once

#include "host/channel/ChannelSource.h"
#include "host/channel/stream/ByteQueue.h"
#include "host/channel/stream/Link.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace host {

class StreamChannel : public ChannelSource {
public:
  // Bytes that wait on each side. Bytes that are sent on top are refused, all that were passed in one call; bytes from
  // the device on top are left to the system, which tells the device to pause where the link can do that.
  static constexpr std::size_t kSendCapacity = 16 << 20;
  static constexpr std::size_t kReceiveCapacity = 1 << 20;
  // How long an operation waits for room, and the destructor for bytes that are still to be sent.
  static constexpr std::chrono::milliseconds kRoomTime{50};
  static constexpr std::chrono::milliseconds kFarewellTime{50};
  // `WaitUntilSent` gives up when nothing has moved for so long.
  static constexpr std::chrono::seconds kPatience{2};

  // Begins to connect and returns. Texts as in ChannelSource.
  StreamChannel(std::string description, std::string configuration, LinkMaker makeLink);
  ~StreamChannel() override;

  bool IsConnecting() override { return m_state == State::kConnecting; }
  std::int32_t WaitUntilOpen() override;
  std::int32_t WaitUntilSent() override;
  bool HasEnded() override;
  bool HasBeenOpen() override { return m_hasBeenOpen; }

private:
  enum class State { kConnecting, kOpen, kClosed };

  const char* DescribeError(std::int64_t code) override;
  bool IsOpen() override { return m_state == State::kOpen; }
  tl::expected<std::size_t, std::int32_t> ReceiveBytes(char* buffer, std::size_t capacity) override;
  std::int32_t SendBytes(std::string_view bytes) override;
  tl::expected<DeviceFiles*, std::int32_t> Files() override;

  // The thread, and its steps.
  void Run() noexcept;
  // The whole life of one link; why it has ended.
  LinkFailure OpenAndDrive();
  LinkFailure Drive(Link& link);
  // False when the channel ends.
  bool Prepare(bool& mayReceive);
  void Settle(const Movement& movement);

  std::mutex m_mutex; // guards the fields below, with the exceptions named
  std::condition_variable m_changed;
  std::atomic<State> m_state = State::kConnecting; // written under the lock
  std::atomic<bool> m_hasBeenOpen = false;
  LinkFailure m_closedBecause; // see above
  ByteQueue m_incoming;
  std::string m_outgoing;   // not yet seen by the thread
  std::string m_sending;    // the thread's alone
  std::size_t m_sent = 0;   // at the front of m_sending; the thread's alone
  std::size_t m_unsent = 0; // bytes that were taken for sending and are not sent
  bool m_refused = false;   // some bytes were not even taken
  bool m_ending = false;
  Signal m_wake;
  const LinkMaker m_makeLink;
  std::thread m_thread; // last: it uses all of the above
};

} // namespace host
