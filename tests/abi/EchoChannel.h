// A host's channel that echoes lines, and fails the test when the module breaks the channel's rules: a reserved
// operation called, the device touched outside a lock, locks that do not pair.
#pragma once

#include "Runtime.h"
#include <ond/OndDeviceClient.h>

class EchoChannel final : public COndDeviceComm_0 {
public:
  // The name of the operation that was called last, and how many calls reached reserved operations.
  const char* lastCall = "";
  int trapCalls = 0;

  int lockCalls = 0;
  bool refuseLock = false;

  // Everything that was taken was given back.
  bool IsFree() const { return m_depth == 0; }

  void Reserved00() override { Trap(); }
  void Reserved01() override { Trap(); }
  void Reserved02() override { Trap(); }
  void Reserved03() override { Trap(); }
  void Reserved04() override { Trap(); }
  void Reserved05() override { Trap(); }
  void Reserved06() override { Trap(); }
  void Reserved07() override { Trap(); }
  void Reserved08() override { Trap(); }
  void Reserved09() override { Trap(); }
  void Reserved12() override { Trap(); }
  void Reserved14() override { Trap(); }
  void Reserved16() override { Trap(); }
  void Reserved17() override { Trap(); }
  void Reserved18() override { Trap(); }
  void Reserved21() override { Trap(); }
  void Reserved22() override { Trap(); }
  void Reserved24() override { Trap(); }
  void Reserved26() override { Trap(); }

  const char* GetInfoString(std::uint32_t what, std::int64_t code) override {
    lastCall = "GetInfoString";
    return what == OND_INFO_ERROR && code != 0 ? "echo error" : "echo";
  }

  std::int32_t Lock(void* owner, std::uint32_t) override {
    lastCall = "Lock";
    if (refuseLock || (m_depth > 0 && owner != m_owner))
      return 1;
    m_owner = owner;
    ++m_depth;
    ++lockCalls;
    return 0;
  }

  std::int32_t Unlock(void* owner) override {
    lastCall = "Unlock";
    Check(m_depth > 0 && owner == m_owner, "Unlock comes from the owner of the lock");
    --m_depth;
    return 0;
  }

  std::uint32_t GetState() override {
    lastCall = "GetState";
    return 1;
  }

  std::int32_t Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) override {
    Touch("Receive");
    std::uint32_t count = 0;
    while (count < bufferSize && m_read < m_written)
      buffer[count++] = m_bytes[m_read++];
    *received = count;
    return 0;
  }

  std::int32_t Transmit(const char* data, std::uint64_t length, std::uint64_t* written) override {
    Touch("Transmit");
    std::uint64_t count = 0;
    while (count < length && m_written < sizeof m_bytes)
      m_bytes[m_written++] = data[count++];
    *written = count;
    return count == length ? 0 : 1;
  }

  std::int32_t TransmitFileFromMemory(const char*, std::uint64_t, std::uint8_t, std::uint8_t, std::uint32_t,
                                      TransferProgressCallback, void*, std::uint32_t, std::uint32_t) override {
    return Touch("TransmitFileFromMemory");
  }
  std::int32_t TransmitFile(const char*, std::uint8_t, std::uint8_t, std::uint32_t, TransferProgressCallback, void*,
                            std::uint32_t, std::uint32_t) override {
    return Touch("TransmitFile");
  }
  std::int32_t ReadDirectory() override { return Touch("ReadDirectory"); }
  std::uint64_t GetDirectoryEntryCount() override {
    Touch("GetDirectoryEntryCount");
    return 0;
  }
  std::int32_t GetDirectoryEntry(std::uint32_t, TDEVDIRENTRY*) override { return Touch("GetDirectoryEntry"); }
  std::int32_t GetDirectoryInfo(TDEVDIRINFO*) override { return Touch("GetDirectoryInfo"); }
  std::int32_t DeleteDeviceFile(std::uint8_t) override { return Touch("DeleteDeviceFile"); }
  std::int32_t FormatDevice(std::uint32_t) override { return Touch("FormatDevice"); }

private:
  void Trap() {
    lastCall = "reserved";
    ++trapCalls;
  }

  std::int32_t Touch(const char* operation) {
    lastCall = operation;
    Check(m_depth > 0, "the device is touched under a lock only");
    return 0;
  }

  void* m_owner = nullptr;
  int m_depth = 0;
  char m_bytes[256] = {}; // all that were sent
  std::uint32_t m_written = 0;
  std::uint32_t m_read = 0;
};
