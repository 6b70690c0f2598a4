// What asks the whole process to end, turned into a stop request: Ctrl+C, the signals of a service manager and of a
// terminal that goes away, a console that is closed. Bodies: win32/ and posix/.
#pragma once

#include <functional>
#include <memory>

namespace host {

struct InterruptCause {
  const char* name;   // for "stopped by …"
  bool isKey = false; // pressed by somebody who is there; otherwise nobody may be
};

// Sees to it that the key that interrupts ends the process, with an exit code that says so, where nothing else takes
// it. To be called once, at the start.
void LetInterruptsEndProcess();

// While one exists, the first of these is this object's. After it, the key that interrupts ends the process as usual;
// the others are only taken note of, since they like to come twice. What is ignored when the object is made, as `nohup`
// and shells without job control have it, stays ignored. One object at a time.
//
// Windows ends a process as soon as it has answered that its console is being closed. So it does not answer: its own
// end does, or the system's patience, which is some seconds.
class Interrupt {
public:
  // `stop` is called when the first of them comes. Natively once, within a signal handler: it may only do what is
  // allowed there. On Windows on a thread of this object's, again and again until the object ends: a request made in
  // the instant before a run begins is forgotten by that run, one of the next ones is not.
  explicit Interrupt(std::function<void(const InterruptCause&)> stop);
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

  // What has come; null when nothing has.
  const char* Interrupted() const;

private:
  struct Body;
  const std::unique_ptr<Body> m_body;
};

} // namespace host
