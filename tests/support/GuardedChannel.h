// A channel for tests that watches how a client treats it.
#pragma once

#include "frame/OndDeviceClient.h"

#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

// Records every call, and fails the test when the device is touched outside a lock, when another owner unlocks, or when
// locks and unlocks do not pair. Failures are collected and reported by the destructor, so that any thread may cause
// them.
//
// It is a device that succeeds at everything and has nothing to say; tests derive from it and override the operations
// they care about, calling the base first for the watching. [any thread]
class GuardedChannel : public COndDeviceComm_0 {
public:
  GuardedChannel() = default;
  virtual ~GuardedChannel();
  GuardedChannel(const GuardedChannel&) = delete;
  GuardedChannel& operator=(const GuardedChannel&) = delete;

  // The calls so far, oldest first, as "Transmit ver", "TransmitFile C:\x.bin 3 1 0", "Lock" and so on.
  std::vector<std::string> Calls() const;
  void ForgetCalls();
  // How many locks are held now.
  std::size_t LockDepth() const;
  // Takes the violations so far, which then do not fail the test: for tests that provoke them.
  std::vector<std::string> TakeViolations();

  const char* GetInfoString(std::uint32_t what, std::int64_t code) override;
  std::int32_t Lock(void* owner, std::uint32_t timeoutMs) override;
  std::int32_t Unlock(void* owner) override;
  std::uint32_t GetState() override;
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
  void Record(std::string call);
  // Records a call that must happen under a lock; answers 0.
  std::int32_t RecordDeviceCall(std::string call);

  mutable std::mutex m_mutex; // guards the fields below
  std::vector<std::string> m_calls;
  std::vector<std::string> m_violations;
  std::condition_variable m_unlocked;
  void* m_owner = nullptr; // null: not locked
  std::size_t m_depth = 0;
};
