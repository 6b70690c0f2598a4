// The host's side of the contract in its smallest useful form: a "device" that sends back whatever it gets.
#pragma once

#include <ond/OndDeviceClient.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>

class LoopChannel final : public COndDeviceComm_0 {
public:
  const char* GetInfoString(std::uint32_t what, std::int64_t code) override {
    switch (what) {
    case OND_INFO_DESCRIPTION:
      return "Loop";
    case OND_INFO_CONFIGURATION:
      return "sends back what it gets";
    default:
      return code == kNoFiles ? "the loop has no files" : "no error";
    }
  }

  // Locks are counted: the module locks again while it holds the lock, on any thread, and each lock has its unlock.
  std::int32_t Lock(void* owner, std::uint32_t timeoutMs) override {
    std::unique_lock guard(m_mutex);
    const auto free = [&] { return m_depth == 0 || m_owner == owner; };
    if (!m_freed.wait_for(guard, std::chrono::milliseconds(timeoutMs), free))
      return kLocked;
    m_owner = owner;
    ++m_depth;
    return 0;
  }

  std::int32_t Unlock(void* owner) override {
    const std::lock_guard guard(m_mutex);
    if (m_depth == 0 || m_owner != owner)
      return kLocked;
    if (--m_depth == 0)
      m_freed.notify_all();
    return 0;
  }

  std::uint32_t GetState() override { return 1; }

  std::int32_t Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) override {
    *received = m_waiting.copy(buffer, bufferSize);
    m_waiting.erase(0, static_cast<std::size_t>(*received));
    return 0;
  }

  std::int32_t Transmit(const char* data, std::uint64_t length, std::uint64_t* written) override {
    m_waiting.append(data, static_cast<std::size_t>(length));
    *written = length;
    return 0;
  }

  // A device without a file store says so; the module shows the text of the code.
  std::int32_t TransmitFileFromMemory(const char*, std::uint64_t, std::uint8_t, std::uint8_t, std::uint32_t,
                                      TransferProgressCallback, void*, std::uint32_t, std::uint32_t) override {
    return kNoFiles;
  }
  std::int32_t TransmitFile(const char*, std::uint8_t, std::uint8_t, std::uint32_t, TransferProgressCallback, void*,
                            std::uint32_t, std::uint32_t) override {
    return kNoFiles;
  }
  std::int32_t ReadDirectory() override { return kNoFiles; }
  std::uint64_t GetDirectoryEntryCount() override { return 0; }
  std::int32_t GetDirectoryEntry(std::uint32_t, TDEVDIRENTRY*) override { return kNoFiles; }
  std::int32_t GetDirectoryInfo(TDEVDIRINFO*) override { return kNoFiles; }
  std::int32_t DeleteDeviceFile(std::uint8_t) override { return kNoFiles; }
  std::int32_t FormatDevice(std::uint32_t) override { return kNoFiles; }

private:
  // The channel's own codes; their numbers mean nothing to the module.
  static constexpr std::int32_t kLocked = 1;
  static constexpr std::int32_t kNoFiles = 2;

  std::mutex m_mutex; // guards the next two
  void* m_owner = nullptr;
  int m_depth = 0;
  std::condition_variable m_freed;

  std::string m_waiting; // used under the channel's lock only, so it needs no guard of its own
};
