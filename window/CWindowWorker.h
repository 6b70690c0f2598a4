// The thread that works for a window, its handle, and the hand-shake of the two.
//
// Who touches what, when, and why:
//  - The window's thread starts the worker and alone waits for it and lets go of it. It keeps what the worker uses as
//  it
//    is until then: the window too, since whoever destroys a window comes through WM_DESTROY, whose handler calls End.
//  - The worker reaches the window through messages only. What it sends waits for the window's thread, what it posts
//  does
//    not. The last thing it does is to post the message that tells its end; behind that it only returns.
//  - End waits for the thread itself. Waiting for the posted message would never succeed, since posted messages are not
//    served there. From End on the worker neither sends nor posts: nobody wants it any more.
//  - While End waits it serves messages sent to its thread. The worker may be sending one: its own, or one of the
//    channel's, which is the host's and may need that to come to an end.
//  - End may itself be called from the handler of a message that the worker is sending at that moment: the channel
//  tells
//    the host "device unplugged", and the host deletes the object. The worker then waits for an answer that would come
//    only behind End. So End first answers that message with 0.
//  - What is served while End waits may lead to End again: the window is destroyed behind the "Abort" that waits. Both
//    wait for the same thread; whoever sees its end first takes the handle down, and the other finds none.
#pragma once

#include "window/Handles.h"

#include <atomic>
#include <cstdint>
#include <functional>

// [the window's thread, unless it says otherwise]
class CWindowWorker {
public:
  CWindowWorker() = default;
  CWindowWorker(const CWindowWorker&) = delete;
  CWindowWorker& operator=(const CWindowWorker&) = delete;
  ~CWindowWorker() {
    End([] {});
  }

  // On the worker's thread; throws nothing. The answer is the worker's result.
  using Work = std::int32_t (*)(void* context);

  // False when there is no thread to be had. The message that tells the end has the result as its wParam.
  bool Start(HWND window, UINT endMessage, SIZE_T stackSize, Work work, void* context);
  // Waits for the end, for ever if need be. `urge` is called at once and then again and again, to ask the work to end.
  // Nothing when no worker runs.
  void End(const std::function<void()>& urge);
  // Of the last worker, after End.
  std::int32_t Result() const { return m_result; }

  // To the window, unless nobody wants the worker any more. [the worker's thread]
  void Send(UINT message, WPARAM wParam, LPARAM lParam) const;
  void Post(UINT message, WPARAM wParam, LPARAM lParam) const;

private:
  static DWORD WINAPI ThreadProc(void* worker);

  HWND m_window = nullptr;
  UINT m_endMessage = 0;
  Work m_work = nullptr;
  void* m_context = nullptr;
  CThreadHandle m_thread;
  std::int32_t m_result = 0;
  std::atomic<bool> m_wanted = false;
};
