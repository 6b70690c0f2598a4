#include "host/lineedit/Keyboard.h"

#include "host/lineedit/posix/KeyDecoder.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace host {
namespace {

constexpr std::chrono::milliseconds kSequenceTime{50}; // within which the bytes of one key come
constexpr std::size_t kUsualColumns = 80;

} // namespace

struct Keyboard::Body {
  Signal& wake;
  termios restored = {};
  bool isRaw = false;
  KeyDecoder decoder;
  std::string bytes; // read and not yet decoded

  void Begin();
  std::optional<Key> Decode();
  // False when nothing came; what came stands in `bytes`, or the terminal is gone.
  bool Fill(std::chrono::milliseconds patience, bool& isGone);
};

void Keyboard::Body::Begin() {
  if (isRaw || tcgetattr(STDIN_FILENO, &restored) != 0)
    return;
  termios raw = restored;
  raw.c_iflag &= ~static_cast<tcflag_t>(ICRNL | INLCR | IGNCR | IXON);
  raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG | IEXTEN);
  raw.c_cc[VMIN] = 1;
  raw.c_cc[VTIME] = 0;
  isRaw = tcsetattr(STDIN_FILENO, TCSADRAIN, &raw) == 0; // what was typed ahead stays
}

std::optional<Key> Keyboard::Body::Decode() {
  while (!bytes.empty()) {
    const char byte = bytes.front();
    bytes.erase(0, 1);
    if (auto key = decoder.Feed(byte))
      return key;
  }
  return std::nullopt;
}

bool Keyboard::Body::Fill(std::chrono::milliseconds patience, bool& isGone) {
  std::array<pollfd, 2> waited{pollfd{STDIN_FILENO, POLLIN, 0}, pollfd{static_cast<int>(wake.Native()), POLLIN, 0}};
  const int count = poll(waited.data(), waited.size(), static_cast<int>(patience.count()));
  if (count <= 0 || waited[1].revents != 0 || waited[0].revents == 0)
    return false;
  std::array<char, 4096> piece;
  const ssize_t size = read(STDIN_FILENO, piece.data(), piece.size());
  if (size > 0)
    bytes.append(piece.data(), static_cast<std::size_t>(size));
  isGone = size == 0 || (size < 0 && errno != EINTR && errno != EAGAIN);
  return size > 0;
}

bool Keyboard::IsThere() {
  return isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
}

Keyboard::Keyboard(Signal& wake) : m_body(new Body{wake, {}, false, {}, {}}) {}

Keyboard::~Keyboard() {
  Rest();
}

std::optional<Key> Keyboard::Read(std::chrono::milliseconds patience) {
  Take();
  bool isGone = false;
  while (true) {
    if (auto key = m_body->Decode())
      return key;
    const bool isWithin = m_body->decoder.IsWithin();
    if (!m_body->Fill(isWithin ? kSequenceTime : patience, isGone)) {
      if (isWithin)
        m_body->decoder.Forget();
      return isGone ? std::optional(Key{KeyKind::kGone, {}}) : std::nullopt;
    }
  }
}

void Keyboard::Take() {
  m_body->Begin();
}

void Keyboard::Rest() {
  if (m_body->isRaw)
    tcsetattr(STDIN_FILENO, TCSADRAIN, &m_body->restored);
  m_body->isRaw = false;
}

void Keyboard::Suspend() {
  Rest();
  kill(0, SIGTSTP); // as the terminal does it: the programs of a pipe together
}

std::size_t Keyboard::Columns() const {
  winsize size = {};
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0 ? size.ws_col : kUsualColumns;
}

bool Keyboard::Write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = write(STDOUT_FILENO, text.data(), text.size());
    if (count > 0)
      text.remove_prefix(static_cast<std::size_t>(count));
    else if (errno != EINTR && errno != EAGAIN)
      return false;
  }
  return true;
}

void Keyboard::ClearScreen() {
  Write("\x1B[H\x1B[2J");
}

std::string Keyboard::HostText(const std::string& keys) {
  return keys;
}

std::string Keyboard::KeyText(const std::string& text) {
  return text;
}

} // namespace host
