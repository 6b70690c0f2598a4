// A device whose every operation serves messages: control leaves the module there, and a test may do anything.
#pragma once

#include "tests/support/GuardedChannel.h"

// Calls `away` at the end of every operation, on whatever thread that is. After Close it must not be used any more, but
// for giving back what is locked.
class RestlessChannel : public GuardedChannel {
public:
  RestlessChannel() {
    duringTransfer = [this](TransferProgressCallback report, void* context) {
      away("a transfer's middle");
      return report(context, 1) != 0 ? -9 : 0;
    };
    duringReceive = [this](char* buffer, std::uint32_t size) {
      return m_answers.exchange(0) != 0 ? std::string("ok\r\n").copy(buffer, size) : 0;
    };
  }

  std::function<void(const char* operation)> away = [](const char*) {};

  void Close() { m_closed = true; }
  // "Transmit behind the end", and so on.
  std::vector<std::string> Late() const {
    const std::lock_guard guard(m_lateMutex);
    return m_late;
  }

protected:
  void Enter(const char* operation) override {
    const std::string name = operation;
    if (name == "Transmit") // is answered once, then there is silence
      m_answers = 1;
    if (!m_closed || name == "Unlock")
      return;
    const std::lock_guard guard(m_lateMutex);
    m_late.push_back(name + " behind the end");
  }
  void Leave(const char* operation) override { away(operation); }

private:
  std::atomic<bool> m_closed = false;
  std::atomic<int> m_answers = 0;
  mutable std::mutex m_lateMutex;
  std::vector<std::string> m_late; // under the mutex
};
