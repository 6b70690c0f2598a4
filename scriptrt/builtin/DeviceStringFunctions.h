// Built-ins that exchange bytes with the device. The channel is locked for the whole run; they never lock it.
#pragma once

#include "scriptrt/builtin/CONXScriptSysFunc.h"

// transmitstring(s): sends the bytes; never fails because of the channel
class CONXTransmitString final : public CONXScriptSysFunc {
public:
  using CONXScriptSysFunc::CONXScriptSysFunc;

private:
  ScriptError Perform(const SysCall& call) override;
};

// receivestring(): what the device has sent so far; reads nothing when nobody wants it
class CONXReceiveString final : public CONXValueFunc {
public:
  using CONXValueFunc::CONXValueFunc;

private:
  ScriptError Compute(const SysCall& call) override;
};
