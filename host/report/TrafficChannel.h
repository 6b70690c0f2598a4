// Writes down what goes to the device and what comes from it.
#pragma once

#include "host/channel/ForwardingChannel.h"
#include "host/report/RunRecord.h"

namespace host {

// Reads that find nothing are left out: a script that waits does thousands. For one client.
class TrafficChannel : public ForwardingChannel {
public:
  using Clock = std::chrono::steady_clock;
  using ForwardingChannel::ForwardingChannel;

  // From now on calls go to this log, timed from `begun`; null: nowhere. The log must outlive the calls. [between runs]
  void RecordTo(BoundedLog<TrafficEntry>* log, Clock::time_point begun) {
    m_log = log;
    m_begun = begun;
  }

private:
  void Around(ChannelCall& call) override;

  BoundedLog<TrafficEntry>* m_log = nullptr;
  Clock::time_point m_begun{};
};

} // namespace host
