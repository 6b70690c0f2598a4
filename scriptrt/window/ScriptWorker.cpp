#include "scriptrt/window/ScriptWorker.h"

#include "util/NoThrow.h"

#include <utility>

namespace {

constexpr SIZE_T kStackSize = 65536;
// Output waits at most so long, or for so many bytes, while more of it comes.
constexpr std::chrono::milliseconds kHoldBack{10};
constexpr std::size_t kHoldBackBytes = 1 << 20;

} // namespace

bool CScriptWorker::Start(std::shared_ptr<CSharedSession> session, const std::string& path, HWND window) {
  m_session = std::move(session);
  m_path = path;
  m_lastSent = {};
  m_pending.clear();
  return m_worker.Start(window, kScriptEndedMessage, kStackSize, Run, this);
}

std::string CScriptWorker::TakeOutput() {
  const std::lock_guard guard(m_mutex);
  return std::exchange(m_pending, {});
}

// --- the worker's thread

std::int32_t CScriptWorker::Run(void* worker) {
  auto& self = *static_cast<CScriptWorker*>(worker);
  const EONX_ERR_ERRCODE_ result = self.m_session->Session().ExecuteScriptFile(self.m_path.c_str(), Output, worker);
  NoThrow([&] { self.SendOutput(self.TakeOutput()); });
  return result;
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
  if (!text.empty())
    m_worker.Send(kScriptOutputMessage, reinterpret_cast<WPARAM>(text.c_str()), 0);
}
