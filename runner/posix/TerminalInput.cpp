#include "runner/TerminalInput.h"

#include <array>
#include <cerrno>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace {

// False when `closed` was raised.
bool WaitForInput(const host::Signal& closed) {
  std::array<pollfd, 2> waited{{{STDIN_FILENO, POLLIN, 0}, {static_cast<int>(closed.Native()), POLLIN, 0}}};
  while (poll(waited.data(), waited.size(), -1) < 0 && errno == EINTR) {
  }
  return waited[1].revents == 0;
}

} // namespace

std::optional<std::string> TerminalInput::ReadLine() {
  std::size_t end = 0;
  while ((end = m_read.find('\n')) == std::string::npos) {
    if (!WaitForInput(m_closed))
      return std::nullopt;
    std::array<char, 4096> piece;
    const ssize_t count = read(STDIN_FILENO, piece.data(), piece.size());
    if (count > 0) {
      m_read.append(piece.data(), static_cast<std::size_t>(count));
    } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
      std::string rest = std::exchange(m_read, {});
      if (rest.empty() || isatty(STDIN_FILENO) != 0)
        return std::nullopt;
      return rest;
    }
  }
  std::string line = m_read.substr(0, end);
  m_read.erase(0, end + 1);
  if (line.ends_with('\r'))
    line.pop_back();
  return line;
}

void TerminalInput::Close() {
  m_closed.Raise();
}
