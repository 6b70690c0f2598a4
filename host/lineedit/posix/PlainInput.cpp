#include "host/lineedit/PlainInput.h"

#include <array>
#include <cerrno>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace host {

struct PlainInput::Body {
  Signal& wake;
  std::string bytes;
  bool hasEnded = false;
};

PlainInput::PlainInput(Signal& wake) : m_body(new Body{wake, {}}) {}
PlainInput::~PlainInput() = default;

std::optional<std::string> PlainInput::Read(std::chrono::milliseconds patience) {
  std::array<pollfd, 2> waited{pollfd{STDIN_FILENO, POLLIN, 0},
                               pollfd{static_cast<int>(m_body->wake.Native()), POLLIN, 0}};
  while (true) {
    if (auto line = TakeLine(m_body->bytes))
      return line;
    if (m_body->hasEnded)
      return std::nullopt;
    const int count = poll(waited.data(), waited.size(), static_cast<int>(patience.count()));
    if (count <= 0 || waited[1].revents != 0)
      return std::nullopt;
    std::array<char, 4096> piece;
    const ssize_t size = read(STDIN_FILENO, piece.data(), piece.size());
    if (size > 0) {
      m_body->bytes.append(piece.data(), static_cast<std::size_t>(size));
    } else if (size == 0 || (errno != EINTR && errno != EAGAIN)) {
      m_body->hasEnded = true;
      if (!m_body->bytes.empty())
        return std::exchange(m_body->bytes, {});
    }
  }
}

bool PlainInput::HasEnded() const {
  return m_body->hasEnded && m_body->bytes.empty();
}

} // namespace host
