// The modal window of a copy to the device: two bars, two lines, and "Abort".
//
// Who touches what, and when:
//  - The window's thread makes the dialog and with it the copy loop (CopyLoop.h), and starts the worker when the window
//    is there (window/CWindowWorker.h has the rest of that). From then on the worker runs the loop; the window's thread
//    reads the list of files, which stays as it is, and may ask the loop to abort.
//  - The worker only posts to the window, so that the window's thread may wait for it. What it has to tell stands in
//    `m_index` and `m_steps`; a message says that there is news, and the next one of its kind is posted only when the
//    window has shown it and then paused for a while (a timer), at whose end it looks for itself. A channel that
//    reports faster than anybody can see is thus neither slowed down by the window nor floods the host's queue, and the
//    last news is always shown. The message that tells the worker's end closes the window.
//  - Every end (that close, the button, Escape, the window's destruction, the object's) first asks the loop to abort,
//    and then waits for the worker's end.
#pragma once

#include "filemanager/CopyLoop.h"
#include "window/CDialog.h"
#include "window/CProgressCtrl.h"
#include "window/CStatic.h"
#include "window/CWindowWorker.h"

class CProgressDialog : public CDialog, private CCopyReceiver {
public:
  // The channel is reserved by the caller until the dialog has ended.
  CProgressDialog(COndDeviceComm_0* channel, std::vector<TFILEENTRY> files, bool continueOnError);
  ~CProgressDialog() override { EndWorker(); }

  // Ends a running copy as the button does. The window's thread only.
  void Abort() { OnCancel(); }

  // --- after DoModal

  // False: there was no memory for a window or a thread, and nothing was copied.
  bool HasRun() const { return m_hasRun; }
  // What the copy came to, see CCopyLoop::Run.
  std::int32_t GetResult() const { return m_worker.Result(); }
  const std::vector<TCOPYERROR>& GetErrors() const { return m_loop.Errors(); }
  const std::vector<TFILEENTRY>& GetFiles() const { return m_loop.Files(); }

protected:
  bool OnInitDialog() override;
  void OnOK() override { OnCancel(); } // Enter, on the only button that there is
  void OnCancel() override;
  bool OnWndMsg(const Message& message, LRESULT& result) override;

private:
  // --- the worker's
  static std::int32_t Work(void* dialog);
  void OnFileStarted(std::size_t index) noexcept override;
  void OnStepsDone(std::uint32_t steps) noexcept override;

  // --- the window's thread's
  void OnFileStartedMessage();
  void OnStepsDoneMessage();
  void OnPauseEnded();
  bool OnDestroy();
  void ShowFile();
  void ShowSteps();
  void EndWorker();

  // Of all files, when the one at `index` begins.
  std::size_t PercentDone(std::size_t index) const { return index * 100 / GetFiles().size(); }

  CCopyLoop m_loop;
  CWindowWorker m_worker;
  bool m_hasRun = false;

  static constexpr std::size_t kNoFile = static_cast<std::size_t>(-1);
  std::size_t m_shownIndex = kNoFile;
  std::atomic<std::size_t> m_index = 0;
  std::atomic<std::uint32_t> m_steps = 0;
  std::atomic<bool> m_fileStartedPosted = false;
  std::atomic<bool> m_stepsDonePosted = false;

  CStatic m_currentFile;
  CProgressCtrl m_totalBar;
  CProgressCtrl m_fileBar;
};
