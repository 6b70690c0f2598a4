// What the built-ins of one run work with.
#pragma once

#include "frame/contract/OndDeviceClient.h"
#include "script/RunScript.h"

class Prompter;

struct RunServices {
  ScriptOutput output;
  COndDeviceComm_0* channel =
      nullptr;                  // the host's; locked for the whole run; null only where a script is merely checked
  Prompter* prompter = nullptr; // null: nobody answers
  FailureObserver* failures = nullptr;
};
