// Built-ins that exchange bytes with the device. The channel is locked for the whole run; they never lock it.
#pragma once

#include "scriptrt/builtin/CONXScriptSysFunc.h"

#include <cstddef>
#include <string>

// transmitstring(s): sends the bytes; never fails because of the channel
class CONXTransmitString final : public CONXScriptSysFunc {
public:
  using CONXScriptSysFunc::CONXScriptSysFunc;

private:
  ScriptError Perform(const SysCall& call) override;
};

// Collects what the device sends. An answer that is under way gets 20 ms to come in, once; a device that talks on
// without a pause is read until it is silent, the user stops the script, or the bytes are more than `limit`: out of
// memory. A channel that fails counts as silent.
ScriptError ReceiveUntilSilent(COndDeviceComm_0& channel, const platform::StopEvent& stopEvent, std::size_t limit,
                               std::string* collected);

// receivestring(): what the device has sent so far; reads nothing when nobody wants it
class CONXReceiveString final : public CONXValueFunc {
public:
  using CONXValueFunc::CONXValueFunc;

private:
  ScriptError Compute(const SysCall& call) override;
};
