#include "scriptrt/window/SharedSession.h"

#include "window/SentMessages.h"

#include <utility>

namespace {

// How often others are asked to end while they are waited for.
constexpr DWORD kUrgeMs = 20;

} // namespace

CSharedSession::CVisit::CVisit(std::shared_ptr<CSharedSession> session) : m_session(std::move(session)) {
  const std::lock_guard guard(m_session->m_mutex);
  m_next = std::exchange(m_session->m_visits, this);
}

CSharedSession::CVisit::~CVisit() {
  const std::lock_guard guard(m_session->m_mutex);
  CVisit** place = &m_session->m_visits;
  while (*place != this)
    place = &(*place)->m_next;
  *place = m_next;
}

CSharedSession::CSharedSession(void* lockOwner) : m_session(lockOwner) {
  m_session.SetPrompter(&m_prompter);
}

void CSharedSession::Prepare() {
  m_session.PrepareRun();
  m_prompter.Admit();
}

void CSharedSession::Abandon() {
  m_session.AbandonScript();
  m_prompter.Dismiss();
}

void CSharedSession::Sever() {
  m_session.Sever();
  m_prompter.Dismiss();
}

void CSharedSession::WaitForOthers() {
  if (!OthersInside())
    return;
  ReplyToSender();
  do {
    Abandon();
    WaitServingSentMessages(nullptr, kUrgeMs);
  } while (OthersInside());
}

bool CSharedSession::OthersInside() {
  const std::lock_guard guard(m_mutex);
  for (const CVisit* visit = m_visits; visit; visit = visit->m_next) {
    if (visit->m_thread != GetCurrentThreadId())
      return true;
  }
  return false;
}
