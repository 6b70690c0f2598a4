#include "scriptrt/builtin/DeviceStringFunctions.h"

#include <array>

ScriptError CONXTransmitString::Perform(const SysCall& call) {
  const std::string& bytes = call.TextAt(0).Bytes();
  std::uint64_t written = 0;
  Services().channel->Transmit(bytes.data(), bytes.size(), &written);
  return kScriptOk;
}

ScriptError CONXReceiveString::Compute(const SysCall& call) {
  // An answer that is under way gets this long to come in, once; a device that talks on without a pause is read until
  // it is silent or the operator stops the script.
  constexpr std::uint32_t kPauseMs = 20;
  std::array<char, 1024> buffer;
  std::string collected;
  for (bool first = true;; first = false) {
    std::uint64_t received = 0;
    const bool failed = Services().channel->Receive(buffer.data(), buffer.size(), &received) != 0;
    if (failed || received == 0)
      break;
    collected.append(buffer.data(), std::min<std::uint64_t>(received, buffer.size()));
    if (call.context.StopEvent().Wait(first ? kPauseMs : 0))
      return kProcessingAborted;
  }
  return call.SetText(std::move(collected));
}
