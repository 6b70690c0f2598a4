// A channel that a run can be cut off from.
#pragma once

#include "host/channel/ChannelErrors.h"
#include "host/channel/ForwardingChannel.h"

namespace host {

// While it is cut off, nothing reaches the device any more: what would move bytes or files is refused. A script that
// has to end goes on to its next loop round or wait, and must not do harm with answers that nobody gave. For one
// client.
class ClosableChannel : public ForwardingChannel {
public:
  using ForwardingChannel::ForwardingChannel;

  void CutOff() { m_isCutOff = true; }
  void Rejoin() { m_isCutOff = false; }

private:
  static bool ReachesDevice(ChannelOperation operation) {
    return operation != ChannelOperation::kGetInfoString && operation != ChannelOperation::kLock &&
           operation != ChannelOperation::kUnlock && operation != ChannelOperation::kGetState;
  }
  void Around(ChannelCall& call) override {
    if (m_isCutOff && ReachesDevice(call.operation))
      call.AnswerInstead(kNotOpen);
    else
      call.Forward();
  }

  bool m_isCutOff = false;
};

} // namespace host
