#include "host/channel/ChannelErrors.h"

namespace host {

const char* ErrorCodeText(std::int64_t code) {
  switch (code) {
  case kChannelOk:
    return "No error";
  case kChannelLocked:
    return "Channel is locked by another client";
  case kNotLocked:
    return "Channel is not locked by this client";
  case kInvalidArgument:
    return "Invalid argument";
  case kOutOfMemory:
    return "Out of memory";
  case kNoSuchFile:
    return "No such file";
  case kDeviceFull:
    return "Device full";
  case kTransferAborted:
    return "Transfer aborted";
  case kLocalFileUnreadable:
    return "Local file cannot be read";
  case kUnknownFileMode:
    return "Unknown file mode";
  case kStorageFailed:
    return "Device storage cannot be written";
  case kNotOpen:
    return "Channel is not open yet";
  case kDataNotTaken:
    return "Device does not take its data";
  case kNoDeviceFiles:
    return "Device files are not possible over a raw byte stream";
  case kNotOnTape:
    return "The tape has no such call";
  case kLostWithLine:
    return "The line was lost, and bytes with it";
  }
  return nullptr;
}

} // namespace host
