// Lines from standard input, as somebody types them.
#pragma once

#include "host/support/Signal.h"

#include <functional>
#include <optional>
#include <string>

class TerminalInput {
public:
  // The next line without its end; nothing when there is none. On a terminal the key for the end of the input says so
  // once, whatever was typed in front of it, and the next call reads on. At the end of a file or pipe every
  // call says so. `interrupted` is called when the input has been interrupted, once in each call. [one thread]
  std::optional<std::string> ReadLine(const std::function<void()>& interrupted);
  // [any thread, also a signal handler]
  void Interrupt() { m_interrupted.Raise(); }
  // From now on there are no lines any more; ends a call that waits. [any thread, also a signal handler]
  void Close() { m_closed.Raise(); }
  // Again there may be lines, and nothing has been interrupted. [the thread of ReadLine]
  void Reopen() {
    m_closed.Clear();
    m_interrupted.Clear();
  }
  // Whether nobody is there: standard input is no terminal, and ended before it gave a single line.
  bool IsDeserted() const { return m_deserted; }

private:
  // At the end of the input: what it had behind its last line end.
  std::optional<std::string> TakeRest();

  host::Signal m_interrupted;
  host::Signal m_closed;
  bool m_hasSpoken = false;
  bool m_deserted = false;
  std::string m_read; // behind the line that was returned last
};
