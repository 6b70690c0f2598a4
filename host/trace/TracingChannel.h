// Writes what happens on a channel to a trace.
#pragma once

#include "host/channel/ForwardingChannel.h"
#include "host/trace/TraceSink.h"

#include <mutex>
#include <vector>

namespace host {

// States and texts that are asked for outside of a lock.
enum class TraceLooks { kTraced, kLeftOut };

// Goes around all other decorators that have a say in what clients see. The sink outlives it. [as the channel inside]
class TracingChannel : public ForwardingChannel {
public:
  TracingChannel(std::unique_ptr<Channel> inner, TraceSink& sink, TraceLooks looks = TraceLooks::kTraced)
      : ForwardingChannel(std::move(inner)), m_sink(sink), m_looks(looks) {}

  // What a replay has to know beside the calls.
  std::int32_t WaitUntilSent() override;
  bool HasEnded() override;

private:
  void Around(ChannelCall& call) override;
  void Trace(const ChannelCall& call, TraceCall& record) noexcept;
  std::uint64_t OwnerOf(const ChannelCall& call);
  void WriteEvent(std::string_view name, std::int32_t code) noexcept;

  TraceSink& m_sink;
  const TraceLooks m_looks;
  std::mutex m_mutex;                // guards the fields below
  std::vector<const void*> m_owners; // as they appeared
  std::uint64_t m_holder = 0;        // who has the lock; 0: nobody
  std::uint64_t m_depth = 0;         // how often
  bool m_ended = false;              // which has been told
};

} // namespace host
