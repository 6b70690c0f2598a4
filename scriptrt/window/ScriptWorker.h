// The thread on which the Script Processor's window runs a script, and the way of its output to the window.
//
// Who touches what, and when:
//  - The window's thread starts the worker. From then on the worker reads the processor, the path and the window's
//  handle, which
//    stay as they are until the thread has ended; the window's thread waits for that before it starts another one.
//  - Output is collected and sent to the window (kScriptOutputMessage) by the worker, which waits until it is shown: at
//  once when
//    the last piece was shown some time ago, otherwise together with what follows. Sending every piece by itself would
//    cost two thread switches a line. What the worker holds back while its script is quiet the window takes by a timer
//    (TakeOutput); these two meet under the mutex, and never overtake each other, since the worker waits for each piece
//    that it sends.
//  - The end is posted (kScriptEndedMessage); the thread sends nothing after it.
//  - When the window is destroyed, its thread calls Abandon, which waits for the thread's end. Meanwhile it serves
//  messages sent
//    to it, dismisses open questions, and drops output. Waiting for the posted end instead would never succeed, since
//    posted messages are not served there.
#pragma once

#include "frame/contract/OndDeviceClient.h"

#include <windows.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <string>

class CONXScriptProcessor;

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

  // Runs a script file. False when there is no thread to be had. The processor and the window outlive the run.
  bool Start(CONXScriptProcessor& processor, const std::string& path, HWND window);
  // Output that the worker holds back.
  std::string TakeOutput();
  // For the handler of the end message: waits for the thread itself.
  void Join();
  // Ends the run whatever it is doing, and waits for that. Nothing when no script runs.
  void Abandon();

private:
  static DWORD WINAPI ThreadProc(void* worker);
  DWORD Run();
  static void Output(void* worker, const char* text);
  void Put(const char* text);
  void SendOutput(const std::string& text);
  void WaitServingSentMessages();

  CONXScriptProcessor* m_processor = nullptr;
  std::string m_path;
  HWND m_window = nullptr;
  HANDLE m_thread = nullptr; // owned
  DWORD m_threadId = 0;
  std::atomic<bool> m_abandoned = false;

  std::chrono::steady_clock::time_point m_lastSent; // the worker's
  std::mutex m_mutex;
  std::string m_pending; // under the mutex
};
