// Who uses the channel, and how much goes over it.
#pragma once

#include "host/channel/ForwardingChannel.h"

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace host {

// What clients did with a channel.
struct ChannelCounts {
  std::uint64_t sent = 0;     // bytes, without those of files
  std::uint64_t files = 0;    // sent
  std::uint64_t received = 0; // bytes
  std::uint64_t calls = 0;    // without locks, and looks at states and texts
  std::uint64_t failed = 0;   // of these

  bool operator==(const ChannelCounts&) const = default;
};

// [any thread]
class ChannelUse {
public:
  using WallClock = std::chrono::system_clock;

  struct Hold {
    std::string name;
    WallClock::time_point since;
    std::uint64_t number = 0; // counts them
  };

  // Of another channel: counts from 0.
  void Reset();
  ChannelCounts Counts() const;
  // Who holds the channel; nothing when nobody does.
  std::optional<Hold> Holder() const;
  // When the channel was given back last.
  WallClock::time_point Released() const;
  // Whose locks an owner's are; empty when that is not known.
  std::string NameOf(const void* owner) const;

  // For a call of that client's that has ended.
  void Count(const std::string& client, const ChannelCall& call);
  // Before its first lock.
  void LearnOwner(const std::string& client, const void* owner);

private:
  void Move(const ChannelCall& call);
  void Lock(const std::string& client, const void* owner);
  void Unlock(const void* owner);

  mutable std::mutex m_mutex; // guards the fields below, and the operations above
  ChannelCounts m_counts;
  std::map<const void*, std::string> m_names;
  std::optional<Hold> m_hold;
  const void* m_holder = nullptr; // whose it is
  WallClock::time_point m_released{};
  std::uint64_t m_depth = 0; // of the holder's locks
  std::uint64_t m_holds = 0;
};

// A client's own way to a channel that several share. The channel stays whose it is.
class ClientPort : public ForwardingChannel {
public:
  // Both outlive this.
  ClientPort(std::string client, Channel& shared, ChannelUse& use)
      : ForwardingChannel(std::unique_ptr<Channel>(&shared)), m_client(std::move(client)), m_use(use) {}
  ~ClientPort() override { static_cast<void>(Exchange(nullptr).release()); }

private:
  void Around(ChannelCall& call) override;

  const std::string m_client;
  ChannelUse& m_use;
};

} // namespace host
