#include "host/report/TrafficChannel.h"

#include <algorithm>
#include <new>

namespace host {
namespace {

// A report shows the beginning of what was sent.
constexpr std::uint64_t kKeptBytes = 64;

bool MovesSomething(ChannelOperation operation) {
  switch (operation) {
  case ChannelOperation::kReceive:
  case ChannelOperation::kTransmit:
  case ChannelOperation::kTransmitFileFromMemory:
  case ChannelOperation::kTransmitFile:
  case ChannelOperation::kReadDirectory:
  case ChannelOperation::kDeleteDeviceFile:
  case ChannelOperation::kFormatDevice:
    return true;
  default:
    return false;
  }
}

} // namespace

void TrafficChannel::Around(ChannelCall& call) {
  const auto begun = Clock::now();
  call.Forward();
  if (!m_log || !MovesSomething(call.operation))
    return;
  const ChannelArguments& given = call.arguments;
  const char* const data = given.buffer ? given.buffer : given.bytes.data();
  const std::uint64_t moved = call.moved ? *call.moved : call.answer == 0 ? given.bytes.size() : 0;
  const bool reads = call.operation == ChannelOperation::kReceive;
  if (reads && moved == 0 && call.answer == 0)
    return;
  try {
    using std::chrono::duration_cast;
    m_log->Add({duration_cast<Microseconds>(begun - m_begun), duration_cast<Microseconds>(Clock::now() - begun),
                kChannelOperations[IndexOf(call.operation)].name, call.answer, moved,
                data ? std::string(data, std::min(moved, kKeptBytes)) : std::string(), !reads});
  } catch (const std::bad_alloc&) {
    m_log = nullptr; // the run is worth more than its report
  }
}

} // namespace host
