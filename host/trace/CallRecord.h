// Calls of a channel as records, and back.
#pragma once

#include "host/channel/ForwardingChannel.h"
#include "host/trace/TraceRecord.h"

namespace host {

// What the caller gave; a local file's contents too, unless it is a very large one.
void TakeGiven(const ChannelCall& call, TraceCall& record);
// What it got, when the call has ended.
void TakeAnswer(const ChannelCall& call, TraceCall& record);
// Answers a call as the record of such a one tells, but for a text and a transfer's reports. Of received bytes, as many
// as fit; returns how many did.
std::size_t GiveAnswer(const TraceCall& record, ChannelCall& call);

} // namespace host
