// Standard input as it comes, together with what may end the waiting for it. Bodies: posix/ and win32/.
#pragma once

#include "host/support/Signal.h"

#include <string>

enum class InputEvent {
  kClosed,      // the signal to close was raised
  kInterrupted, // the signal to interrupt was raised
  kBytes,
  kEnd, // of a file or pipe; on a terminal, the key for it
};

// Waits for the first of these. Bytes go behind `bytes`; from a terminal they come by the line. `interrupted` may be
// null. What is typed or sent while nobody waits is there for the next call. [one thread]
InputEvent WaitForInput(const host::Signal& closed, const host::Signal* interrupted, std::string& bytes);

bool IsInputTerminal();

// What a terminal's user presses for the end of the input.
const char* EndKeys();
