// Base of the decorators: every operation goes to the channel inside.
#pragma once

#include "host/channel/Channel.h"

#include <memory>
#include <utility>

namespace host {

// Threads: whatever the channel inside allows.
class ForwardingChannel : public Channel {
public:
  // `inner` must not be null.
  explicit ForwardingChannel(std::unique_ptr<Channel> inner) : m_inner(std::move(inner)) {}

  bool IsConnecting() override { return m_inner->IsConnecting(); }
  std::int32_t WaitUntilOpen() override { return m_inner->WaitUntilOpen(); }
  std::int32_t WaitUntilSent() override { return m_inner->WaitUntilSent(); }
  const char* GetInfoString(std::uint32_t what, std::int64_t code) override {
    return m_inner->GetInfoString(what, code);
  }
  std::int32_t Lock(void* owner, std::uint32_t timeoutMs) override { return m_inner->Lock(owner, timeoutMs); }
  std::int32_t Unlock(void* owner) override { return m_inner->Unlock(owner); }
  std::uint32_t GetState() override { return m_inner->GetState(); }
  std::int32_t Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) override {
    return m_inner->Receive(buffer, bufferSize, received);
  }
  std::int32_t Transmit(const char* data, std::uint64_t length, std::uint64_t* written) override {
    return m_inner->Transmit(data, length, written);
  }
  std::int32_t TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t fileId,
                                      std::uint8_t fileType, std::uint32_t fileMode, TransferProgressCallback callback,
                                      void* context, std::uint32_t flag, std::uint32_t steps) override {
    return m_inner->TransmitFileFromMemory(data, length, fileId, fileType, fileMode, callback, context, flag, steps);
  }
  std::int32_t TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType, std::uint32_t fileMode,
                            TransferProgressCallback callback, void* context, std::uint32_t flag,
                            std::uint32_t steps) override {
    return m_inner->TransmitFile(localPath, fileId, fileType, fileMode, callback, context, flag, steps);
  }
  std::int32_t ReadDirectory() override { return m_inner->ReadDirectory(); }
  std::uint64_t GetDirectoryEntryCount() override { return m_inner->GetDirectoryEntryCount(); }
  std::int32_t GetDirectoryEntry(std::uint32_t index, TDEVDIRENTRY* entry) override {
    return m_inner->GetDirectoryEntry(index, entry);
  }
  std::int32_t GetDirectoryInfo(TDEVDIRINFO* info) override { return m_inner->GetDirectoryInfo(info); }
  std::int32_t DeleteDeviceFile(std::uint8_t fileId) override { return m_inner->DeleteDeviceFile(fileId); }
  std::int32_t FormatDevice(std::uint32_t usedBlocksOnly) override { return m_inner->FormatDevice(usedBlocksOnly); }

protected:
  Channel* Inner() const { return m_inner.get(); }
  // Puts another channel inside; returns the one that was there. No call may be on its way to it.
  std::unique_ptr<Channel> Exchange(std::unique_ptr<Channel> inner) { return std::exchange(m_inner, std::move(inner)); }

private:
  std::unique_ptr<Channel> m_inner;
};

} // namespace host
