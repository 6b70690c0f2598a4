// Copies a list of files to the device, one after the other: what to do when one fails or the user aborts. Knows no
// window.
#pragma once

#include "util/JobFile.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// A file that was not copied.
struct TCOPYERROR {
  std::size_t index; // in the list of files
  std::int32_t code; // the channel's
};

// Hears how far the copy is. [the copying thread; nothing may be thrown]
class CCopyReceiver {
public:
  // The file at `index` begins.
  virtual void OnFileStarted(std::size_t index) noexcept = 0;
  // Of the file that is being sent, of 100.
  virtual void OnStepsDone(std::uint32_t steps) noexcept = 0;

protected:
  ~CCopyReceiver() = default;
};

// One copy. Made on the window's thread; `Run` is called once, on a thread of its own, and until it has returned the
// other side only calls `Abort`, `Files` and `Channel`.
class CCopyLoop {
public:
  // The channel, which may be null, is reserved by the caller for as long as the copy runs.
  CCopyLoop(COndDeviceComm_0* channel, std::vector<TFILEENTRY> files, bool continueOnError);
  CCopyLoop(const CCopyLoop&) = delete;
  CCopyLoop& operator=(const CCopyLoop&) = delete;

  // 0, the first failure's code, or EONX_ERR_ABORTED. Allocates nothing, so that a small stack and full memory do not
  // matter.
  std::int32_t Run(CCopyReceiver& receiver) noexcept;

  // No further file is begun, and the channel is asked to break off the one being sent. [any thread]
  void Abort() noexcept { m_abort = true; }

  COndDeviceComm_0* Channel() const { return m_channel; }
  const std::vector<TFILEENTRY>& Files() const { return m_files; }
  // In the order of the copy.
  const std::vector<TCOPYERROR>& Errors() const { return m_errors; }

private:
  static std::int32_t OnProgress(void* loop, std::uint32_t stepsDone);
  std::int32_t Send(const TFILEENTRY& file);

  COndDeviceComm_0* const m_channel;
  const std::vector<TFILEENTRY> m_files;
  const bool m_continueOnError;
  std::vector<TCOPYERROR> m_errors; // has room for every file from the start
  std::atomic<bool> m_abort = false;
  CCopyReceiver* m_receiver = nullptr; // during Run
};
