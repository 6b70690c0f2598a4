#include "host/commandline/OpenChannel.h"

#include "host/commandline/ExitCodes.h"
#include "host/commandline/StandardStreams.h"
#include "host/commandline/TraceCommand.h"
#include "host/trace/TracingChannel.h"

namespace host {

tl::expected<std::unique_ptr<Channel>, OpenFailure> OpenChannel(std::string_view program, const ChannelOptions& options,
                                                                const std::string& tracePath, TraceFork& records,
                                                                std::unique_ptr<TraceWriter>& trace) {
  auto made = MakeChannel(options);
  if (!made) {
    const ChannelFailure& failure = made.error();
    return tl::unexpected(failure.badText ? OpenFailure{kExitUsage, false, "--channel: " + failure.text}
                                          : OpenFailure{kExitNoChannel, false, failure.text});
  }
  if (!tracePath.empty() && !trace) {
    trace = OpenTrace(program, tracePath, options.text, records);
    if (!trace)
      return tl::unexpected(OpenFailure{kExitStream, true, tracePath + ": the trace cannot be written"});
  }
  if (!records.IsEmpty())
    made = std::make_unique<TracingChannel>(std::move(*made), records);
  if (const std::string notice = (*made)->Notice(); !notice.empty())
    PrintMessage(program, notice);
  if (const std::int32_t code = (*made)->WaitUntilOpen(); code != 0 && !(*made)->HasBeenOpen())
    return tl::unexpected(
        OpenFailure{kExitNoChannel, false, options.text + ": " + (*made)->GetInfoString(OND_INFO_ERROR, code)});
  return std::move(*made);
}

} // namespace host
