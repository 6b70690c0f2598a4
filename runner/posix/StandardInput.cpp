#include "runner/StandardInput.h"

#include <array>
#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace {

pollfd Readable(std::intptr_t descriptor) {
  return {static_cast<int>(descriptor), POLLIN, 0};
}

} // namespace

InputEvent WaitForInput(const host::Signal& closed, const host::Signal* interrupted, std::string& bytes) {
  std::array<pollfd, 3> waited{Readable(closed.Native()), Readable(interrupted ? interrupted->Native() : -1),
                               Readable(STDIN_FILENO)};
  for (;;) {
    while (poll(waited.data(), waited.size(), -1) < 0 && errno == EINTR) {
    }
    if (waited[0].revents != 0)
      return InputEvent::kClosed;
    if (waited[1].revents != 0)
      return InputEvent::kInterrupted;
    std::array<char, 4096> piece;
    const ssize_t count = read(STDIN_FILENO, piece.data(), piece.size());
    if (count > 0) {
      bytes.append(piece.data(), static_cast<std::size_t>(count));
      return InputEvent::kBytes;
    }
    if (count == 0 || (errno != EINTR && errno != EAGAIN))
      return InputEvent::kEnd;
  }
}

bool IsInputTerminal() {
  return isatty(STDIN_FILENO) != 0;
}

const char* EndKeys() {
  return "Ctrl+D";
}
