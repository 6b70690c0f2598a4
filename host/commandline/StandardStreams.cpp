#include "host/commandline/StandardStreams.h"

#include "host/commandline/ExitCodes.h"

#include <cstdio>
#include <cstring>

namespace host {

namespace {
constexpr std::chrono::milliseconds kHoldBack{10};
constexpr std::size_t kHoldBackBytes = 65536;
} // namespace

StandardOutput::StandardOutput() : m_held(std::make_unique_for_overwrite<char[]>(kHoldBackBytes)) {}

StandardOutput::~StandardOutput() {
  Show();
  {
    const std::lock_guard guard(m_mutex);
    m_ending = true;
  }
  m_changed.notify_one();
  if (m_thread.joinable())
    m_thread.join();
}

bool StandardOutput::Write(std::string_view bytes) {
  if (bytes.empty())
    return !m_failed;
  m_atLineStart = bytes.back() == '\n';
  std::size_t end = m_heldEnd.load(std::memory_order_relaxed);
  if (bytes.size() > kHoldBackBytes - end) {
    Show();
    end = 0;
  }
  if (bytes.size() > kHoldBackBytes) {
    const std::lock_guard guard(m_mutex);
    WriteOut(bytes);
    return !m_failed;
  }
  std::memcpy(m_held.get() + end, bytes.data(), bytes.size());
  m_heldEnd.store(end + bytes.size(), std::memory_order_release);
  if (!m_watched.load(std::memory_order_relaxed))
    BeginWatch();
  return !m_failed;
}

void StandardOutput::BeginWatch() {
  const std::lock_guard guard(m_mutex);
  if (Clock::now() - m_lastShown >= kHoldBack)
    return ShowHeld();
  m_watched = true;
  if (!m_thread.joinable())
    m_thread = std::thread([this] { ShowInTime(); });
  else
    m_changed.notify_one();
}

bool StandardOutput::Show() {
  const std::lock_guard guard(m_mutex);
  ShowHeld();
  m_shownEnd = 0;
  m_heldEnd.store(0, std::memory_order_relaxed);
  return !m_failed;
}

void StandardOutput::ShowHeld() {
  const std::size_t end = m_heldEnd.load(std::memory_order_acquire);
  if (end == m_shownEnd)
    return;
  WriteOut({m_held.get() + m_shownEnd, end - m_shownEnd});
  m_shownEnd = end;
}

void StandardOutput::WriteOut(std::string_view bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size() || std::fflush(stdout) != 0)
    m_failed = true;
  m_lastShown = Clock::now();
}

void StandardOutput::ShowInTime() {
  std::unique_lock lock(m_mutex);
  while (!m_ending) {
    const bool anythingHeld = IsAnythingHeld();
    if (!anythingHeld && !m_watched) {
      m_changed.wait(lock);
      continue;
    }
    // Looks once more after it has told that it stops watching: a writer may not have seen that yet.
    if (!anythingHeld)
      m_watched = false;
    m_changed.wait_for(lock, kHoldBack, [this] { return m_ending; });
    ShowHeld();
  }
}

int ExitCodeOf(std::string_view program, StandardOutput& output) {
  if (output.Show())
    return 0;
  PrintMessage(program, "standard output cannot be written");
  return kExitStream;
}

ReadResult ReadStandardInput() {
  return ReadToEnd(stdin, kLongestScript);
}

void PrintLines(std::string_view lines) {
  std::fwrite(lines.data(), 1, lines.size(), stderr);
}

void PrintMessage(std::string_view program, std::string_view text) {
  std::fprintf(stderr, "%.*s: %.*s\n", static_cast<int>(program.size()), program.data(), static_cast<int>(text.size()),
               text.data());
}

} // namespace host
