#include "runner/TerminalInput.h"

#include "runner/StandardInput.h"

#include <utility>

std::optional<std::string> TerminalInput::ReadLine(const std::function<void()>& interrupted) {
  const host::Signal* interrupt = &m_interrupted;
  std::size_t end = 0;
  while ((end = m_read.find('\n')) == std::string::npos) {
    switch (WaitForInput(m_closed, interrupt, m_read)) {
    case InputEvent::kClosed:
      return std::nullopt;
    case InputEvent::kInterrupted:
      interrupt = nullptr;
      interrupted();
      break;
    case InputEvent::kBytes:
      break;
    case InputEvent::kEnd:
      return TakeRest();
    }
  }
  m_hasSpoken = true;
  std::string line = m_read.substr(0, end);
  m_read.erase(0, end + 1);
  if (line.ends_with('\r'))
    line.pop_back();
  return line;
}

std::optional<std::string> TerminalInput::TakeRest() {
  std::string rest = std::exchange(m_read, {});
  const bool isTerminal = IsInputTerminal();
  if (rest.empty() || isTerminal) {
    m_deserted = !isTerminal && !m_hasSpoken;
    return std::nullopt;
  }
  m_hasSpoken = true;
  return rest;
}
