// Lines from standard input, as somebody types them. Body: posix/.
#pragma once

#include "host/support/Signal.h"

#include <optional>
#include <string>

class TerminalInput {
public:
  // The next line without its end; nothing when there is none. On a terminal the key for the end of the input (Ctrl+D)
  // says so once, whatever was typed in front of it, and the next call reads on. At the end of a file or pipe every
  // call says so. [one thread]
  std::optional<std::string> ReadLine();
  // From now on there are no lines any more; ends a call that waits. [any thread]
  void Close();

private:
  host::Signal m_closed;
  std::string m_read; // behind the line that was returned last
};
