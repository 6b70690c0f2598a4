// A channel over a raw byte stream.
//
// A thread of the channel's drives the link, so that no operation ever waits for the device:
//
//   any thread                       the channel's thread
//   --------------------------------------------------------------------------------------------
//   constructor: starts the thread   opens a link: kConnecting -> kOpen, or -> kClosed
//   SendBytes: m_outgoing grows,     swaps m_outgoing into m_sending when that is used up, and moves from
//     the link is woken                there without the lock, at the pace; counts m_unsent down
//   ReceiveBytes: m_incoming         m_incoming grows; at its bound, receiving stops until
//     shrinks                          ReceiveBytes wakes the link
//                                    ends the link when it has failed, then says kClosed; or kLost,
//                                      drops what is unsent, pauses and opens another link -> kOpen
//   destructor: sets m_ending,       ends the link on every way out, then says kClosed
//     wakes the link and a pause,
//     joins
//
// A link is woken only in kOpen, under the lock: an attempt to open takes it for the channel's end. Why the state is
// what it is stands in m_reason before it is, in a text that stays; so both can be read without the lock. Two blocking
// threads, one for each direction, would need no waking, but a blocked call cannot be ended alike on all systems.
#pragma once

#include "host/channel/ChannelSource.h"
#include "host/channel/stream/ByteQueue.h"
#include "host/channel/stream/LineOptions.h"
#include "host/channel/stream/Link.h"
#include "host/channel/stream/ReconnectPause.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
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
  // `WaitUntilSent` gives up when nothing has moved for so long, the pace's own pauses aside.
  static constexpr std::chrono::seconds kPatience{2};

  // Begins to connect and returns. Texts as in ChannelSource.
  StreamChannel(std::string description, std::string configuration, LinkMaker makeLink, const LineOptions& options);
  ~StreamChannel() override;

  bool IsConnecting() override { return m_state == State::kConnecting; }
  std::int32_t WaitUntilOpen() override;
  std::int32_t WaitUntilSent() override;
  bool HasEnded() override;
  bool HasBeenOpen() override { return m_hasBeenOpen; }
  void WatchLine(LineWatcher watcher) override;

private:
  enum class State { kConnecting, kOpen, kLost, kClosed };

  const char* DescribeError(std::int64_t code) override;
  bool IsOpen() override { return m_state == State::kOpen; }
  // What a client sends goes out, now or once the line is open again.
  bool IsUsable() const { return m_state == State::kOpen || m_state == State::kLost; }
  tl::expected<std::size_t, std::int32_t> ReceiveBytes(char* buffer, std::size_t capacity) override;
  std::int32_t SendBytes(std::string_view bytes) override;
  tl::expected<DeviceFiles*, std::int32_t> Files() override;

  // The thread, and its steps.
  void Run() noexcept;
  // The whole life of one link; why it has ended, empty when the channel ends.
  LinkFailure OpenAndDrive();
  LinkFailure Drive(Link& link);
  void BecomeOpen();
  // Leaves the lost line alone for a while. False when the channel ends.
  bool AwaitNextAttempt(const LinkFailure& failure);
  // Tells the watcher. Not under the lock.
  void Tell(LineEvent event, const LinkFailure& reason);
  // Changes the state; throws nothing.
  void Become(State state, LinkFailure reason) noexcept;
  // False when the channel ends.
  bool Prepare(bool& mayReceive);
  void Settle(const Movement& movement);

  std::mutex m_mutex; // guards the fields below, with the exceptions named
  std::condition_variable m_changed;
  std::atomic<State> m_state = State::kConnecting; // written under the lock
  std::atomic<bool> m_hasBeenOpen = false;
  std::atomic<const char*> m_reason = ""; // one of the next, written under the lock
  std::set<std::string> m_reasons;        // for as long as the channel lives; there are few
  std::shared_ptr<const LineWatcher> m_watcher;
  ByteQueue m_incoming;
  std::string m_outgoing;   // not yet seen by the thread
  std::string m_sending;    // the thread's alone
  std::size_t m_sent = 0;   // at the front of m_sending; the thread's alone
  std::size_t m_unsent = 0; // bytes that were taken for sending and are not sent
  bool m_refused = false;   // some bytes were not even taken
  bool m_lost = false;      // some were on their way when the line was lost
  bool m_ending = false;
  Signal m_wake;
  const LinkMaker m_makeLink;
  const bool m_reconnects;
  const Pace m_pace;
  ReconnectPause m_pause; // the thread's alone
  std::thread m_thread;   // last: it uses all of the above
};

} // namespace host
