#include "runner/TerminalInput.h"

#include <array>
#include <cerrno>
#include <poll.h>
#include <span>
#include <unistd.h>
#include <utility>

namespace {

pollfd Readable(std::intptr_t descriptor) {
  return {static_cast<int>(descriptor), POLLIN, 0};
}

void WaitForAny(std::span<pollfd> waited) {
  while (poll(waited.data(), waited.size(), -1) < 0 && errno == EINTR) {
  }
}

} // namespace

std::optional<std::string> TerminalInput::ReadLine(const std::function<void()>& interrupted) {
  std::array<pollfd, 3> waited{Readable(m_closed.Native()), Readable(m_interrupted.Native()), Readable(STDIN_FILENO)};
  std::size_t end = 0;
  while ((end = m_read.find('\n')) == std::string::npos) {
    WaitForAny(waited);
    if (waited[0].revents != 0)
      return std::nullopt;
    if (waited[1].revents != 0) {
      waited[1] = Readable(-1);
      interrupted();
      continue;
    }
    std::array<char, 4096> piece;
    const ssize_t count = read(STDIN_FILENO, piece.data(), piece.size());
    if (count > 0) {
      m_read.append(piece.data(), static_cast<std::size_t>(count));
    } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
      std::string rest = std::exchange(m_read, {});
      const bool isTerminal = isatty(STDIN_FILENO) != 0;
      if (rest.empty() || isTerminal) {
        m_deserted = !isTerminal && !m_hasSpoken;
        return std::nullopt;
      }
      m_hasSpoken = true;
      return rest;
    }
  }
  m_hasSpoken = true;
  std::string line = m_read.substr(0, end);
  m_read.erase(0, end + 1);
  if (line.ends_with('\r'))
    line.pop_back();
  return line;
}
