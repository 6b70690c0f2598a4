#include "window/CWindowWorker.h"

#include "window/SentMessages.h"

namespace {

// How often the work is asked to end.
constexpr DWORD kUrgeMs = 20;

} // namespace

bool CWindowWorker::Start(HWND window, UINT endMessage, SIZE_T stackSize, Work work, void* context) {
  m_window = window;
  m_endMessage = endMessage;
  m_work = work;
  m_context = context;
  m_wanted = true;
  m_thread.reset(CreateThread(nullptr, stackSize, ThreadProc, this, 0, nullptr));
  return m_thread != nullptr;
}

DWORD WINAPI CWindowWorker::ThreadProc(void* worker) {
  auto& self = *static_cast<CWindowWorker*>(worker);
  const std::int32_t result = self.m_work(self.m_context);
  self.Post(self.m_endMessage, static_cast<WPARAM>(result), 0);
  return static_cast<DWORD>(result);
}

void CWindowWorker::Send(UINT message, WPARAM wParam, LPARAM lParam) const {
  if (m_wanted)
    SendMessageA(m_window, message, wParam, lParam);
}

void CWindowWorker::Post(UINT message, WPARAM wParam, LPARAM lParam) const {
  if (m_wanted)
    PostMessageA(m_window, message, wParam, lParam);
}

void CWindowWorker::End(const std::function<void()>& urge) {
  if (!m_thread)
    return;
  m_wanted = false;
  ReplyToSender();
  while (m_thread) {
    urge();
    if (WaitServingSentMessages(m_thread.get(), kUrgeMs)) {
      DWORD result = 0;
      GetExitCodeThread(m_thread.get(), &result);
      m_result = static_cast<std::int32_t>(result);
      m_thread.reset();
    }
  }
}
