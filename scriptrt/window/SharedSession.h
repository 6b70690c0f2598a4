// The session of one Script Processor as its runs share it: with the windows that ask, and who is inside.
//
// Runs may be on any thread: the window's worker, a thread of the host's inside `Call`, the user-interface thread
// itself. The object may be deleted, or its window destroyed, while one is under way: behind a question, an operation
// of the channel or an output function, all of which may serve messages. So
//  - whoever comes in makes a visit first, and uses the object itself no more: the visit keeps all this alive;
//  - Abandon and Sever ask the run to end and dismiss its question;
//  - a visitor on another thread is waited for. One on this thread stands below on the stack and goes on only when
//    whoever deletes has returned. It finds itself severed then: it makes no operation of the channel but the unlocking
//    that it owes, and writes no output.
#pragma once

#include "scriptrt/run/ScriptSession.h"
#include "scriptrt/window/WindowsPrompter.h"

#include <memory>
#include <mutex>

class CSharedSession {
public:
  // One thread inside an operation of the object's, from its beginning to its end. [any thread]
  class CVisit {
  public:
    explicit CVisit(std::shared_ptr<CSharedSession> session);
    CVisit(const CVisit&) = delete;
    CVisit& operator=(const CVisit&) = delete;
    ~CVisit();

    CSharedSession* operator->() const { return m_session.get(); }

  private:
    friend class CSharedSession;
    const std::shared_ptr<CSharedSession> m_session;
    const DWORD m_thread = GetCurrentThreadId();
    CVisit* m_next = nullptr;
  };

  // `lockOwner` as ScriptSession takes it.
  explicit CSharedSession(void* lockOwner);

  ScriptSession& Session() { return m_session; }

  // To be called by whoever asks for a run, on its thread: forgets earlier stop requests, so that one from then on
  // counts, and lets questions be shown.
  void Prepare();
  // Asks a run to end soon, and answers its questions with Cancel. A run that somebody asks for later forgets this, and
  // a question that is just opening may be missed: whoever waits for the end calls again. [any thread]
  void Abandon();
  // The same for good: for the end of the object.
  void Sever();
  // Waits until no other thread is inside, serving messages sent to this one, and asks them to end meanwhile. What is
  // served may delete the object: the caller holds a share of this. [user-interface thread]
  void WaitForOthers();

private:
  bool OthersInside();

  CWindowsPrompter m_prompter;
  ScriptSession m_session;
  std::mutex m_mutex;
  CVisit* m_visits = nullptr; // under the mutex
};
