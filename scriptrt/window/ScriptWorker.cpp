#include "scriptrt/window/ScriptWorker.h"

#include "scriptrt/window/CONXScriptProcessor.h"
#include "util/NoThrow.h"

#include <utility>

namespace {

constexpr SIZE_T kStackSize = 65536;
// Output waits at most so long, or for so many bytes, while more of it comes.
constexpr std::chrono::milliseconds kHoldBack{10};
constexpr std::size_t kHoldBackBytes = 1 << 20;
// How often questions are dismissed while the end of an abandoned run is waited for.
constexpr DWORD kDismissMs = 20;

} // namespace

bool CScriptWorker::Start(CONXScriptProcessor& processor, const std::string& path, HWND window) {
  m_processor = &processor;
  m_path = path;
  m_window = window;
  m_abandoned = false;
  m_lastSent = {};
  m_pending.clear();
  m_thread = CreateThread(nullptr, kStackSize, ThreadProc, this, 0, &m_threadId);
  return m_thread != nullptr;
}

// --- the worker's thread

DWORD WINAPI CScriptWorker::ThreadProc(void* worker) {
  return static_cast<CScriptWorker*>(worker)->Run();
}

DWORD CScriptWorker::Run() {
  const EONX_ERR_ERRCODE_ result = m_processor->RunPreparedFile(m_path.c_str(), Output, this);
  SendOutput(TakeOutput());
  if (!m_abandoned)
    PostMessageA(m_window, kScriptEndedMessage, static_cast<WPARAM>(result), 0);
  return static_cast<DWORD>(result);
}

// Called by the script engine, which no exception may enter: output is lost when memory runs out.
void CScriptWorker::Output(void* worker, const char* text) {
  NoThrow([=] { static_cast<CScriptWorker*>(worker)->Put(text); });
}

void CScriptWorker::Put(const char* text) {
  const auto now = std::chrono::steady_clock::now();
  {
    const std::lock_guard guard(m_mutex);
    m_pending += text;
    if (m_pending.size() < kHoldBackBytes && now - m_lastSent < kHoldBack)
      return;
  }
  SendOutput(TakeOutput());
  m_lastSent = std::chrono::steady_clock::now();
}

void CScriptWorker::SendOutput(const std::string& text) {
  if (!text.empty() && !m_abandoned)
    SendMessageA(m_window, kScriptOutputMessage, reinterpret_cast<WPARAM>(text.c_str()), 0);
}

std::string CScriptWorker::TakeOutput() {
  const std::lock_guard guard(m_mutex);
  return std::exchange(m_pending, {});
}

// --- the window's thread

void CScriptWorker::Join() {
  if (m_thread) {
    WaitForSingleObject(m_thread, INFINITE);
    CloseHandle(std::exchange(m_thread, nullptr));
  }
}

void CScriptWorker::Abandon() {
  if (m_thread) {
    m_abandoned = true;
    WaitServingSentMessages();
    Join();
  }
}

void CScriptWorker::WaitServingSentMessages() {
  for (;;) {
    m_processor->AbandonScript(); // again: a run that somebody asks for meanwhile would forget it
    m_processor->DismissQuestions(m_threadId);
    if (MsgWaitForMultipleObjects(1, &m_thread, FALSE, kDismissMs, QS_SENDMESSAGE) == WAIT_OBJECT_0)
      return;
    MSG message;
    PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
  }
}
