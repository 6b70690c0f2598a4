// Ctrl+C as an event that a thread can wait for. Bodies: win32/ and posix/.
#pragma once

namespace host {

// While one exists, the first Ctrl+C is this object's; a second one ends the process as usual. One object at a time.
class Interrupt {
public:
  Interrupt();
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

  // Waits for Ctrl+C (true) or Cancel (false). [one thread]
  bool Wait();
  // Ends the wait. [any thread]
  void Cancel();
};

} // namespace host
