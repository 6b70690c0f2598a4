#include "host/support/StreamSetup.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace host {
namespace {

bool IsClosed(int stream) {
  return fcntl(stream, F_GETFD) == -1 && errno == EBADF;
}

} // namespace

bool PrepareStandardStreams() {
  signal(SIGPIPE, SIG_IGN);
  signal(SIGXFSZ, SIG_IGN); // a file that may not grow any more is like a full disk
  // In this order: each takes the lowest free number. Opened the wrong way round, so that using one fails as before.
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    const int way = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
    if (IsClosed(stream) && open("/dev/null", way) != stream)
      return false;
  }
  return true;
}

bool IsOutputTerminal() {
  return isatty(STDOUT_FILENO) != 0;
}

bool IsMessagesTerminal() {
  return isatty(STDERR_FILENO) != 0;
}

} // namespace host
