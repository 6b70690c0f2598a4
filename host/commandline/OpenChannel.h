// The channel that a command works with: made, traced if that is wanted, and open.
#pragma once

#include "host/channel/factory/ChannelFactory.h"
#include "host/trace/TraceFork.h"
#include "host/trace/TraceWriter.h"

#include <string_view>

namespace host {

struct OpenFailure {
  int code;    // the process's exit code
  bool isTold; // on standard error
  std::string text;
};

// Waits until the channel is open. With a path, its records go to `trace` too: the one that is there, for a channel
// that is opened anew, or one that is begun now. `records` and `trace` must outlive the channel; `program` begins
// messages and must stay.
tl::expected<std::unique_ptr<Channel>, OpenFailure> OpenChannel(std::string_view program, const ChannelOptions& options,
                                                                const std::string& tracePath, TraceFork& records,
                                                                std::unique_ptr<TraceWriter>& trace);

} // namespace host
