#include "scriptrt/builtin/ControlFunctions.h"

#include "platform/Platform.h"

#include <cstdio>

ScriptError CONXDelayFunc::Perform(const SysCall& call) {
  Services().output.Show();
  const bool stopped = call.context.StopEvent().Wait(static_cast<std::uint32_t>(call.NumberAt(0)));
  return stopped ? kProcessingAborted : kScriptOk;
}

ScriptError CONXExitFunc::Perform(const SysCall&) {
  return kExitScript;
}

ScriptError CONXGetSysDateFunc::Compute(const SysCall& call) {
  const platform::LocalTime now = platform::Now();
  char text[40];
  std::snprintf(text, sizeof text, "%.02u.%.02u.%.04u", now.day, now.month, now.year);
  return call.SetText(text);
}

ScriptError CONXGetSysTimeFunc::Compute(const SysCall& call) {
  const platform::LocalTime now = platform::Now();
  char text[40];
  std::snprintf(text, sizeof text, "%.02u:%.02u:%02u", now.hour, now.minute, now.second);
  return call.SetText(text);
}
