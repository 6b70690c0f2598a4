// Runs a script for the windows, beside them.
#pragma once

#include "host/console/ModuleProcessor.h"
#include "host/notes/Notes.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

namespace host {

// One script at a time, by a Script Processor of its own, on a thread of its own. What the script prints and asks, and
// what becomes of it, goes into the log. [user-interface thread]
class ScriptRunner {
public:
  // Both outlive this.
  ScriptRunner(Channel& channel, Notes& notes) : m_port("ondhost", channel, notes.use), m_notes(notes) {}
  ~ScriptRunner() { End(); }
  ScriptRunner(const ScriptRunner&) = delete;
  ScriptRunner& operator=(const ScriptRunner&) = delete;

  // `window` is posted `ended` when a script is over. The module outlives this.
  void Attach(const Module& module, HWND window, UINT ended);
  void Connect(bool connected);
  bool CanRun() const { return m_processor != nullptr; }
  bool IsRunning() const { return m_thread.joinable(); }
  // The script that runs, or ran last.
  const std::string& Path() const { return m_path; }
  // A script must be able to run, and none be running.
  void Run(const std::string& path);
  // Asks the script to end, as often as it takes: `Refresh` goes on asking.
  void Stop() { m_stopping = IsRunning(); }
  void Refresh();
  // To be called for `ended`.
  void Finish();
  // Stops and waits; messages of other threads are served meanwhile. Safe at any time, and again.
  void End();

private:
  static void TakeOutput(void* context, const char* text) noexcept;
  void RunOnThread();
  void NoteQuestion(const AnsweredQuestion& answered);

  ClientPort m_port;
  Notes& m_notes;
  std::unique_ptr<ModuleProcessor> m_processor;
  HWND m_window = nullptr;
  UINT m_endedMessage = 0;
  std::thread m_thread;
  bool m_stopping = false;
  std::string m_path; // these are the thread's while it runs
  std::chrono::steady_clock::time_point m_begun;
  EONX_ERR_ERRCODE_ m_result = EONX_ERR_NONE;
  std::atomic<bool> m_over = false;
};

} // namespace host
