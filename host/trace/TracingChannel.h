// Writes what happens on a channel to a trace.
#pragma once

#include "host/channel/ForwardingChannel.h"
#include "host/trace/TraceFork.h"

#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace host {

// States and texts that are asked for outside of a lock.
enum class TraceLooks { kTraced, kLeftOut };

// Goes around all other decorators that have a say in what clients see. The sinks outlive it. [as the channel inside]
class TracingChannel : public ForwardingChannel {
public:
  using NameOfOwner = std::function<std::string(const void* owner)>;

  // `nameOf` tells what users call an owner, empty when it has no name.
  TracingChannel(
      std::unique_ptr<Channel> inner, TraceFork& sinks, TraceLooks looks = TraceLooks::kTraced,
      NameOfOwner nameOf = [](const void*) { return std::string(); });

  // What a replay has to know beside the calls.
  std::int32_t WaitUntilOpen() override;
  std::int32_t WaitUntilSent() override;
  bool HasEnded() override;

private:
  void Around(ChannelCall& call) override;
  void Trace(const ChannelCall& call, TraceCall& record) noexcept;
  std::uint64_t OwnerOf(const ChannelCall& call);
  void WriteEvent(std::string_view name, std::int32_t code) noexcept;
  void WriteName(const void* owner, std::size_t number);

  TraceFork& m_sinks;
  const TraceLooks m_looks;
  const NameOfOwner m_nameOf;
  std::mutex m_mutex;                // guards the fields below
  std::vector<const void*> m_owners; // as they appeared
  std::uint64_t m_holder = 0;        // who has the lock; 0: nobody
  std::uint64_t m_depth = 0;         // how often
  bool m_openingTold = false;        // how it went
  bool m_ended = false;              // which has been told
};

} // namespace host
