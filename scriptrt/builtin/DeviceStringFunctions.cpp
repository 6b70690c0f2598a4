#include "scriptrt/builtin/DeviceStringFunctions.h"

#include <algorithm>
#include <array>
#include <utility>

ScriptError CONXTransmitString::Perform(const SysCall& call) {
  const std::string_view bytes = call.TextAt(0);
  std::uint64_t written = 0;
  Services().channel->Transmit(bytes.data(), bytes.size(), &written);
  return kScriptOk;
}

ScriptError ReceiveUntilSilent(COndDeviceComm_0& channel, const platform::StopEvent& stopEvent, std::size_t limit,
                               std::string* collected) {
  constexpr std::uint32_t kPauseMs = 20;
  std::array<char, 1024> buffer;
  for (bool first = true;; first = false) {
    std::uint64_t received = 0;
    const bool failed = channel.Receive(buffer.data(), buffer.size(), &received) != 0;
    if (failed || received == 0)
      return kScriptOk;
    const std::size_t count = std::min<std::uint64_t>(received, buffer.size());
    if (count > limit - collected->size())
      return kOutOfMemory;
    collected->append(buffer.data(), count);
    if (stopEvent.Wait(first ? kPauseMs : 0))
      return kProcessingAborted;
  }
}

ScriptError CONXReceiveString::Compute(const SysCall& call) {
  std::string collected;
  if (const ScriptError error =
          ReceiveUntilSilent(*Services().channel, call.context.StopEvent(), SharedText::kMaxSize, &collected))
    return error;
  return call.SetText(collected);
}
