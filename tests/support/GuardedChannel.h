// A channel for tests that watches how a client treats it.
#pragma once

#include "frame/OndDeviceClient.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

// Records what is done to the device, and fails the test when that happens outside a lock, when another owner unlocks,
// or when locks and unlocks do not pair. Failures are collected and reported by the destructor, so that any thread may
// cause them.
//
// It is an open device with a directory, which succeeds at everything and has nothing to say; tests derive from it and
// override the operations they care about, calling the base first for the watching and the answer. [any thread]
class GuardedChannel : public COndDeviceComm_0 {
public:
  GuardedChannel() = default;
  virtual ~GuardedChannel();
  GuardedChannel(const GuardedChannel&) = delete;
  GuardedChannel& operator=(const GuardedChannel&) = delete;

  // The calls so far, oldest first: "Lock 500", "Transmit ver", "TransmitFile C:\x.bin 3 1 0 1 40", "Delete 3",
  // "GetInfoString -5" (for an error), "Unlock" and so on. Polls do not show: locks that do not wait, state, texts.
  std::vector<std::string> Calls() const;
  // Those whose text begins so.
  std::vector<std::string> Calls(const std::string& beginning) const;
  void ForgetCalls();
  // What the next calls of an operation answer, by its name above; then 0 again.
  void Fail(const std::string& operation, std::deque<std::int32_t> codes);
  std::atomic<std::uint32_t> state = 1;
  // What the device holds; sending files does not change it. [set while nothing else goes on]
  std::vector<TDEVDIRENTRY> directory;
  TDEVDIRINFO info{512, 100, 3, 1000, 1536};
  // Called within each transfer, to report its progress; a code other than 0 is what the transfer answers.
  std::function<std::int32_t(TransferProgressCallback report, void* context)> duringTransfer;
  // How many locks are held now.
  std::size_t LockDepth() const;
  // Takes the violations so far, which then do not fail the test: for tests that provoke them.
  std::vector<std::string> TakeViolations();

  // "error CODE", "Bench 4" or "115200 8N1".
  const char* GetInfoString(std::uint32_t what, std::int64_t code) override;
  std::int32_t Lock(void* owner, std::uint32_t timeoutMs) override;
  std::int32_t Unlock(void* owner) override;
  std::uint32_t GetState() override { return state; }
  std::int32_t Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) override;
  std::int32_t Transmit(const char* data, std::uint64_t length, std::uint64_t* written) override;
  std::int32_t TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t fileId,
                                      std::uint8_t fileType, std::uint32_t fileMode, TransferProgressCallback callback,
                                      void* context, std::uint32_t flag, std::uint32_t steps) override;
  std::int32_t TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType, std::uint32_t fileMode,
                            TransferProgressCallback callback, void* context, std::uint32_t flag,
                            std::uint32_t steps) override;
  std::int32_t ReadDirectory() override;
  std::uint64_t GetDirectoryEntryCount() override;
  std::int32_t GetDirectoryEntry(std::uint32_t index, TDEVDIRENTRY* entry) override;
  std::int32_t GetDirectoryInfo(TDEVDIRINFO* info) override;
  std::int32_t DeleteDeviceFile(std::uint8_t fileId) override;
  std::int32_t FormatDevice(std::uint32_t usedBlocksOnly) override;

private:
  // Records a call and takes the code that it answers. `m_mutex` is held.
  std::int32_t Record(const std::string& call);
  // The same of a call that must happen under a lock.
  std::int32_t Touch(const std::string& call);
  // The same of a file's.
  std::int32_t Transfer(const std::string& call, std::initializer_list<std::uint32_t> arguments,
                        TransferProgressCallback report, void* context);

  mutable std::mutex m_mutex; // guards the fields below
  std::vector<std::string> m_calls;
  std::vector<std::string> m_violations;
  std::map<std::string, std::deque<std::int32_t>> m_codes; // by operation
  std::string m_errorText;
  std::condition_variable m_unlocked;
  void* m_owner = nullptr;           // null: not locked
  std::vector<std::uint32_t> m_held; // time limits of the locks
};

std::string Joined(const std::vector<std::string>& texts);
