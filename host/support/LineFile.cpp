#include "host/support/LineFile.h"

#include "host/support/SystemError.h"

#include <new>
#include <utility>

namespace host {

LineFile::LineFile(SoleFile file, std::chrono::milliseconds patience, std::function<void(const std::string&)> onFailure)
    : m_file(std::move(file)), m_patience(patience), m_onFailure(std::move(onFailure)),
      m_thread([this] { WriteInTime(); }) {}

LineFile::~LineFile() {
  {
    const std::lock_guard guard(m_mutex);
    m_ending = true;
  }
  m_wake.notify_one();
  m_thread.join();
}

// The thread's.
void LineFile::WriteInTime() {
  std::string lines;
  std::unique_lock lock(m_mutex);
  for (bool ending = false; !ending;) {
    const auto isTime = [this] { return m_ending || IsDue(); };
    if (m_patience.count() == 0)
      m_wake.wait(lock, isTime);
    else
      m_wake.wait_for(lock, m_patience, isTime);
    ending = m_ending;
    lines.clear();
    lines.swap(m_pending); // both keep their memory
    if (m_failed || lines.empty())
      continue;
    lock.unlock();
    const int error = m_file.Write(lines);
    try {
      if (error != 0)
        m_onFailure(SystemErrorText(error));
    } catch (const std::bad_alloc&) {
      // No memory to tell it with.
    }
    lock.lock();
    m_failed = error != 0;
    m_written.notify_all();
  }
}

} // namespace host
