// A device whose every operation serves messages: control leaves the module there, and a test may do anything.
#pragma once

#include "tests/support/GuardedChannel.h"

// Calls `away` at the end of every operation, on whatever thread that is. After Close it must not be used any more, but
// for giving back what is locked.
class RestlessChannel : public GuardedChannel {
public:
  std::function<void(const char* operation)> away = [](const char*) {};

  void Close() { m_closed = true; }
  void Reopen() { m_closed = false; }
  // "Transmit behind the end", and so on.
  std::vector<std::string> Late() const {
    const std::lock_guard guard(m_mutex);
    return m_late;
  }

  const char* GetInfoString(std::uint32_t what, std::int64_t code) override {
    return Leave("GetInfoString", [&] { return GuardedChannel::GetInfoString(what, code); });
  }
  std::int32_t Lock(void* owner, std::uint32_t timeoutMs) override {
    return Leave("Lock", [&] { return GuardedChannel::Lock(owner, timeoutMs); });
  }
  std::int32_t Unlock(void* owner) override {
    const std::int32_t code = GuardedChannel::Unlock(owner);
    away("Unlock");
    return code;
  }
  std::uint32_t GetState() override {
    return Leave("GetState", [&] { return GuardedChannel::GetState(); });
  }
  // One answer, then silence.
  std::int32_t Receive(char* buffer, std::uint32_t size, std::uint64_t* received) override {
    return Leave("Receive", [&] {
      const std::int32_t code = GuardedChannel::Receive(buffer, size, received);
      if (m_answers.exchange(0) != 0)
        *received = static_cast<std::uint64_t>(std::string("ok\r\n").copy(buffer, size));
      return code;
    });
  }
  std::int32_t Transmit(const char* data, std::uint64_t length, std::uint64_t* written) override {
    m_answers = 1;
    return Leave("Transmit", [&] { return GuardedChannel::Transmit(data, length, written); });
  }
  std::int32_t TransmitFile(const char* path, std::uint8_t id, std::uint8_t type, std::uint32_t mode,
                            TransferProgressCallback report, void* context, std::uint32_t flag,
                            std::uint32_t steps) override {
    return Leave("TransmitFile", [&] {
      const std::int32_t code = GuardedChannel::TransmitFile(path, id, type, mode, report, context, flag, steps);
      away("TransmitFile's middle");
      return report(context, steps) != 0 ? -9 : code;
    });
  }
  std::int32_t TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t id, std::uint8_t type,
                                      std::uint32_t mode, TransferProgressCallback report, void* context,
                                      std::uint32_t flag, std::uint32_t steps) override {
    return Leave("TransmitFileFromMemory", [&] {
      return GuardedChannel::TransmitFileFromMemory(data, length, id, type, mode, report, context, flag, steps);
    });
  }
  std::int32_t ReadDirectory() override {
    return Leave("ReadDirectory", [&] { return GuardedChannel::ReadDirectory(); });
  }
  std::uint64_t GetDirectoryEntryCount() override {
    return Leave("GetDirectoryEntryCount", [&] { return GuardedChannel::GetDirectoryEntryCount(); });
  }
  std::int32_t GetDirectoryEntry(std::uint32_t index, TDEVDIRENTRY* entry) override {
    return Leave("GetDirectoryEntry", [&] { return GuardedChannel::GetDirectoryEntry(index, entry); });
  }
  std::int32_t GetDirectoryInfo(TDEVDIRINFO* out) override {
    return Leave("GetDirectoryInfo", [&] { return GuardedChannel::GetDirectoryInfo(out); });
  }
  std::int32_t DeleteDeviceFile(std::uint8_t id) override {
    return Leave("DeleteDeviceFile", [&] { return GuardedChannel::DeleteDeviceFile(id); });
  }
  std::int32_t FormatDevice(std::uint32_t usedBlocksOnly) override {
    return Leave("FormatDevice", [&] { return GuardedChannel::FormatDevice(usedBlocksOnly); });
  }

private:
  template <typename Operation>
  std::invoke_result_t<Operation> Leave(const char* name, Operation operation) {
    if (m_closed) {
      const std::lock_guard guard(m_mutex);
      m_late.push_back(std::string(name) + " behind the end");
    }
    const auto answer = operation();
    away(name);
    return answer;
  }

  std::atomic<bool> m_closed = false;
  std::atomic<int> m_answers = 0;
  mutable std::mutex m_mutex;
  std::vector<std::string> m_late; // under the mutex
};
