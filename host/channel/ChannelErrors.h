// The error codes that the host's channels answer with.
#pragma once

#include <cstdint>

namespace host {

// Scripts see these numbers as the results of their transfers, so a number never changes its meaning.
enum ChannelError : std::int32_t {
  kChannelOk = 0,
  kChannelLocked = 1,
  kNotLocked = 2,
  kInvalidArgument = 3,
  kOutOfMemory = 4,
  kNoSuchFile = 5,
  kDeviceFull = 6,
  kTransferAborted = 7,
  kLocalFileUnreadable = 8,
  kUnknownFileMode = 9,
  kStorageFailed = 10,
  kNotOpen = 11,      // a channel that is closed tells why instead of the constant text
  kDataNotTaken = 12, // too much waits to be sent, or nothing moves
  kNoDeviceFiles = 13,
  kNotOnTape = 14,    // of a replayed channel; once the run differs from the tape, where and how
  kLostWithLine = 15, // bytes that were on their way
};

// The constant text of a code; null for a code that is none of the above.
const char* ErrorCodeText(std::int64_t code);

} // namespace host
