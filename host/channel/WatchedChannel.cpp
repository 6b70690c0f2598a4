#include "host/channel/WatchedChannel.h"

#include "host/channel/ChannelErrors.h"

namespace host {
namespace {

bool IsWatched(ChannelOperation operation) {
  return operation == ChannelOperation::kReceive || operation == ChannelOperation::kTransmit ||
         operation == ChannelOperation::kTransmitFileFromMemory || operation == ChannelOperation::kTransmitFile;
}

} // namespace

WatchedChannel::WatchedChannel(std::unique_ptr<Channel> inner, std::function<void(Left)> usedAfterEnd)
    : ForwardingChannel(std::move(inner)), m_usedAfterEnd(std::move(usedAfterEnd)) {}

void WatchedChannel::Around(ChannelCall& call) {
  call.Forward();
  if (!IsWatched(call.operation))
    return;
  bool endsReading = false;
  if (call.operation == ChannelOperation::kReceive)
    endsReading = std::exchange(m_reading, call.answer == 0 && *call.moved != 0);
  if (call.answer == 0 || endsReading)
    return;
  const bool sends = call.operation != ChannelOperation::kReceive;
  if (HasEnded())
    m_usedAfterEnd(Left::kNothing);
  else if (sends && call.answer == kNotOpen)
    m_usedAfterEnd(Left::kBytesToRead);
}

} // namespace host
