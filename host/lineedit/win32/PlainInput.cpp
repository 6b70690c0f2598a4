// Waiting for a pipe and for a signal at once is nothing that Windows offers for standard input, so a thread reads it.
#include "host/lineedit/PlainInput.h"

#include <array>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <windows.h>

namespace host {

namespace {

// The lines on their way from the thread to the reader, both of which hold it.
struct Lines {
  std::mutex mutex; // guards what follows
  std::deque<std::string> lines;
  bool hasEnded = false;
  bool isUnwanted = false;
  std::condition_variable taken;
  Signal changed;
};

constexpr std::size_t kMostWaiting = 1024; // lines

// False when nobody wants any more.
bool Pass(Lines& lines, std::string line) {
  std::unique_lock lock(lines.mutex);
  lines.taken.wait(lock, [&] { return lines.isUnwanted || lines.lines.size() < kMostWaiting; });
  lines.lines.push_back(std::move(line));
  lines.changed.Raise();
  return !lines.isUnwanted;
}

void ReadAll(const std::shared_ptr<Lines>& lines) {
  std::string bytes;
  std::array<char, 4096> piece;
  DWORD size = 0;
  while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), piece.data(), static_cast<DWORD>(piece.size()), &size, nullptr) !=
             FALSE &&
         size != 0) {
    bytes.append(piece.data(), size);
    while (auto line = TakeLine(bytes)) {
      if (!Pass(*lines, std::move(*line)))
        return;
    }
  }
  if (!bytes.empty())
    Pass(*lines, std::move(bytes));
  const std::lock_guard guard(lines->mutex);
  lines->hasEnded = true;
  lines->changed.Raise();
}

} // namespace

struct PlainInput::Body {
  Signal& wake;
  std::shared_ptr<Lines> lines = std::make_shared<Lines>();
};

// The thread may be within a read that nothing ends, so it is left to itself.
PlainInput::PlainInput(Signal& wake) : m_body(new Body{wake}) {
  std::thread([lines = m_body->lines] { ReadAll(lines); }).detach();
}

PlainInput::~PlainInput() {
  const std::lock_guard guard(m_body->lines->mutex);
  m_body->lines->isUnwanted = true;
  m_body->lines->taken.notify_all();
}

std::optional<std::string> PlainInput::Read(std::chrono::milliseconds patience) {
  Lines& lines = *m_body->lines;
  const HANDLE waited[] = {reinterpret_cast<HANDLE>(m_body->wake.Native()),
                           reinterpret_cast<HANDLE>(lines.changed.Native())};
  const DWORD time = patience.count() < 0 ? INFINITE : static_cast<DWORD>(patience.count());
  if (WaitForMultipleObjects(2, waited, FALSE, time) != WAIT_OBJECT_0 + 1)
    return std::nullopt;
  const std::lock_guard guard(lines.mutex);
  if (lines.lines.empty())
    return std::nullopt; // at the end, which stays raised
  std::string line = std::move(lines.lines.front());
  lines.lines.pop_front();
  lines.taken.notify_all();
  if (lines.lines.empty() && !lines.hasEnded)
    lines.changed.Clear();
  return line;
}

bool PlainInput::HasEnded() const {
  const std::lock_guard guard(m_body->lines->mutex);
  return m_body->lines->hasEnded && m_body->lines->lines.empty();
}

} // namespace host
