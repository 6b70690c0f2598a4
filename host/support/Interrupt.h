// What asks the whole process to end, as an event that a thread can wait for: Ctrl+C, the signals of a service manager
// and of a terminal that goes away, a console that is closed. Bodies: win32/ and posix/.
#pragma once

#include <optional>

namespace host {

struct InterruptCause {
  const char* name;   // for "stopped by …"
  bool isKey = false; // pressed by somebody who is there; otherwise nobody may be
};

// While one exists, the first of these is this object's. After it, the key that interrupts ends the process as usual;
// the others are only taken note of, since they like to come twice. One object at a time.
//
// Windows ends a process as soon as it has answered that its console is being closed. So it does not answer: its own
// end does, or the system's patience, which is some seconds.
class Interrupt {
public:
  Interrupt();
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

  // Waits for the first of them, or for Cancel (nothing). [one thread]
  std::optional<InterruptCause> Wait();
  // Ends the wait. [any thread]
  void Cancel();
};

} // namespace host
