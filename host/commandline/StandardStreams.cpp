#include "host/commandline/StandardStreams.h"

#include "host/commandline/ExitCodes.h"

#include <cstdio>

namespace host {

namespace {
constexpr std::chrono::milliseconds kHoldBack{10};
constexpr std::size_t kHoldBackBytes = 65536;
} // namespace

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
  const std::lock_guard guard(m_mutex);
  if (bytes.empty())
    return !m_failed;
  m_atLineStart = bytes.back() == '\n';
  const bool begins = m_pending.empty();
  m_pending += bytes;
  if (m_pending.size() >= kHoldBackBytes || (begins && Clock::now() - m_lastShown >= kHoldBack))
    ShowLocked();
  else if (!m_thread.joinable())
    m_thread = std::thread([this] { ShowInTime(); });
  else if (begins)
    m_changed.notify_one();
  return !m_failed;
}

bool StandardOutput::Show() {
  const std::lock_guard guard(m_mutex);
  ShowLocked();
  return !m_failed;
}

void StandardOutput::ShowLocked() {
  if (m_pending.empty())
    return;
  const bool written =
      std::fwrite(m_pending.data(), 1, m_pending.size(), stdout) == m_pending.size() && std::fflush(stdout) == 0;
  if (!written)
    m_failed = true;
  m_pending.clear();
  m_lastShown = Clock::now();
}

void StandardOutput::ShowInTime() {
  std::unique_lock lock(m_mutex);
  while (!m_ending) {
    if (m_pending.empty())
      m_changed.wait(lock);
    else if (m_changed.wait_until(lock, m_lastShown + kHoldBack) == std::cv_status::timeout)
      ShowLocked();
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

void PrintMessage(std::string_view program, std::string_view text) {
  std::fprintf(stderr, "%.*s: %.*s\n", static_cast<int>(program.size()), program.data(), static_cast<int>(text.size()),
               text.data());
}

} // namespace host
