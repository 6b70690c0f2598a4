// The thread on which the Script Processor's window runs a script, and the way of its output to the window.
//
// Who touches what, and when, beside the hand-shake that window/CWindowWorker.h explains:
//  - The window's thread starts the worker. From then on the worker reads the session and the path, which stay as they
//  are
//    until the thread has ended; the window's thread waits for that before it starts another one.
//  - Output is collected and sent to the window (kScriptOutputMessage) by the worker, which waits until it is shown: at
//    once when the last piece was shown some time ago, otherwise together with what follows. Sending every piece by
//    itself would cost two thread switches a line. What the worker holds back while its script is quiet the window
//    takes by a timer (TakeOutput); these two meet under the mutex, and never overtake each other, since the worker
//    waits for each piece that it sends.
//  - When the window is destroyed, its thread calls Abandon, which dismisses open questions and drops output while it
//    waits for the end.
#pragma once

#include "scriptrt/window/SharedSession.h"
#include "window/CWindowWorker.h"

#include <chrono>
#include <memory>
#include <mutex>
#include <string>

// wParam: a zero-terminated text (const char*), valid during the call
inline constexpr UINT kScriptOutputMessage = WM_APP;
// wParam: the run's result
inline constexpr UINT kScriptEndedMessage = WM_APP + 1;

// [the window's thread, unless it says otherwise]
class CScriptWorker {
public:
  CScriptWorker() = default;
  ~CScriptWorker() { Abandon(); }
  CScriptWorker(const CScriptWorker&) = delete;
  CScriptWorker& operator=(const CScriptWorker&) = delete;

  // Runs a script file; CSharedSession::Prepare has been called before. False when there is no thread to be had.
  bool Start(std::shared_ptr<CSharedSession> session, const std::string& path, HWND window);
  // Output that the worker holds back.
  std::string TakeOutput();
  // For the handler of the end message: waits for the thread itself.
  void Join() {
    m_worker.End([] {});
  }
  // Ends the run whatever it is doing, and waits for that. Nothing when no script runs.
  void Abandon() {
    m_worker.End([this] { m_session->Abandon(); });
  }

private:
  static std::int32_t Run(void* worker);
  static void Output(void* worker, const char* text);
  void Put(const char* text);
  void SendOutput(const std::string& text);

  std::shared_ptr<CSharedSession> m_session;
  std::string m_path;
  CWindowWorker m_worker;

  std::chrono::steady_clock::time_point m_lastSent; // the worker's
  std::mutex m_mutex;
  std::string m_pending; // under the mutex
};
