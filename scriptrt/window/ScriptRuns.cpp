#include "scriptrt/window/ScriptRuns.h"

#include "window/SentMessages.h"

#include <utility>

namespace {

// How often others are asked to end while they are waited for.
constexpr DWORD kUrgeMs = 20;

} // namespace

CScriptRuns::CVisit::CVisit(std::shared_ptr<CScriptRuns> runs) : m_runs(std::move(runs)) {
  const std::lock_guard guard(m_runs->m_mutex);
  m_next = std::exchange(m_runs->m_visits, this);
}

CScriptRuns::CVisit::~CVisit() {
  const std::lock_guard guard(m_runs->m_mutex);
  CVisit** place = &m_runs->m_visits;
  while (*place != this)
    place = &(*place)->m_next;
  *place = m_next;
}

CScriptRuns::CScriptRuns(void* lockOwner) : m_runner(lockOwner) {
  m_runner.SetOperator(&m_operator);
}

void CScriptRuns::Prepare() {
  m_runner.PrepareRun();
  m_operator.Admit();
}

void CScriptRuns::Abandon() {
  m_runner.AbandonScript();
  m_operator.Dismiss();
}

void CScriptRuns::Sever() {
  m_runner.Sever();
  m_operator.Dismiss();
}

void CScriptRuns::WaitForOthers() {
  if (!OthersInside())
    return;
  ReplyToSender();
  do {
    Abandon();
    WaitServingSentMessages(nullptr, kUrgeMs);
  } while (OthersInside());
}

bool CScriptRuns::OthersInside() {
  const std::lock_guard guard(m_mutex);
  for (const CVisit* visit = m_visits; visit; visit = visit->m_next) {
    if (visit->m_thread != GetCurrentThreadId())
      return true;
  }
  return false;
}
