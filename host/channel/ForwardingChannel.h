// Base of the decorators: every operation goes to the channel inside, by one way that a decorator can stand in.
#pragma once

#include "host/channel/Channel.h"
#include "host/channel/ChannelOperations.h"

#include <memory>
#include <type_traits>
#include <utility>

namespace host {

// One call of an operation, as `ForwardingChannel::Around` sees it.
class ChannelCall {
public:
  ChannelCall(const ChannelCall&) = delete;
  ChannelCall& operator=(const ChannelCall&) = delete;

  const ChannelOperation operation;
  // Where the number of bytes that were received or sent goes; null when the operation or its caller has no such place.
  std::uint64_t* const moved;
  // What the caller gets: a code, a state or a number; of `GetInfoString` the text.
  std::int64_t answer = 0;
  const char* text = "";

  // Lets the call reach the channel inside, which sets the answer.
  virtual void Forward() = 0;
  // Answers in place of the channel inside: nothing is moved.
  void AnswerInstead(std::int64_t value) {
    answer = value;
    if (moved)
      *moved = 0;
  }

protected:
  ChannelCall(ChannelOperation called, std::uint64_t* movedBytes) : operation(called), moved(movedBytes) {}
  ~ChannelCall() = default;
};

// Threads: whatever the channel inside allows.
class ForwardingChannel : public Channel {
public:
  // `inner` may be null for a decorator whose `Around` lets no call through then.
  explicit ForwardingChannel(std::unique_ptr<Channel> inner) : m_inner(std::move(inner)) {}

  bool IsConnecting() override { return m_inner->IsConnecting(); }
  std::int32_t WaitUntilOpen() override { return m_inner->WaitUntilOpen(); }
  std::int32_t WaitUntilSent() override { return m_inner->WaitUntilSent(); }
  bool HasEnded() override { return m_inner->HasEnded(); }
  bool HasBeenOpen() override { return m_inner->HasBeenOpen(); }

  const char* GetInfoString(std::uint32_t what, std::int64_t code) override {
    return Pass(ChannelOperation::kGetInfoString, [&] { return m_inner->GetInfoString(what, code); });
  }
  std::int32_t Lock(void* owner, std::uint32_t timeoutMs) override {
    return Pass(ChannelOperation::kLock, [&] { return m_inner->Lock(owner, timeoutMs); });
  }
  std::int32_t Unlock(void* owner) override {
    return Pass(ChannelOperation::kUnlock, [&] { return m_inner->Unlock(owner); });
  }
  std::uint32_t GetState() override {
    return Pass(ChannelOperation::kGetState, [&] { return m_inner->GetState(); });
  }
  std::int32_t Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) override {
    return Pass(
        ChannelOperation::kReceive, [&] { return m_inner->Receive(buffer, bufferSize, received); }, received);
  }
  std::int32_t Transmit(const char* data, std::uint64_t length, std::uint64_t* written) override {
    return Pass(
        ChannelOperation::kTransmit, [&] { return m_inner->Transmit(data, length, written); }, written);
  }
  std::int32_t TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t fileId,
                                      std::uint8_t fileType, std::uint32_t fileMode, TransferProgressCallback callback,
                                      void* context, std::uint32_t flag, std::uint32_t steps) override {
    return Pass(ChannelOperation::kTransmitFileFromMemory, [&] {
      return m_inner->TransmitFileFromMemory(data, length, fileId, fileType, fileMode, callback, context, flag, steps);
    });
  }
  std::int32_t TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType, std::uint32_t fileMode,
                            TransferProgressCallback callback, void* context, std::uint32_t flag,
                            std::uint32_t steps) override {
    return Pass(ChannelOperation::kTransmitFile, [&] {
      return m_inner->TransmitFile(localPath, fileId, fileType, fileMode, callback, context, flag, steps);
    });
  }
  std::int32_t ReadDirectory() override {
    return Pass(ChannelOperation::kReadDirectory, [&] { return m_inner->ReadDirectory(); });
  }
  std::uint64_t GetDirectoryEntryCount() override {
    return Pass(ChannelOperation::kGetDirectoryEntryCount, [&] { return m_inner->GetDirectoryEntryCount(); });
  }
  std::int32_t GetDirectoryEntry(std::uint32_t index, TDEVDIRENTRY* entry) override {
    return Pass(ChannelOperation::kGetDirectoryEntry, [&] { return m_inner->GetDirectoryEntry(index, entry); });
  }
  std::int32_t GetDirectoryInfo(TDEVDIRINFO* info) override {
    return Pass(ChannelOperation::kGetDirectoryInfo, [&] { return m_inner->GetDirectoryInfo(info); });
  }
  std::int32_t DeleteDeviceFile(std::uint8_t fileId) override {
    return Pass(ChannelOperation::kDeleteDeviceFile, [&] { return m_inner->DeleteDeviceFile(fileId); });
  }
  std::int32_t FormatDevice(std::uint32_t usedBlocksOnly) override {
    return Pass(ChannelOperation::kFormatDevice, [&] { return m_inner->FormatDevice(usedBlocksOnly); });
  }

protected:
  // What a decorator does before and after each operation, `call.Forward()` in between; without that, the channel
  // inside does not see the call. Throws nothing. [as the operation]
  virtual void Around(ChannelCall& call) { call.Forward(); }

  Channel* Inner() const { return m_inner.get(); }
  // Puts another channel inside; returns the one that was there. No call may be on its way to it.
  std::unique_ptr<Channel> Exchange(std::unique_ptr<Channel> inner) { return std::exchange(m_inner, std::move(inner)); }

private:
  template <class Run>
  class CallOf final : public ChannelCall {
  public:
    CallOf(ChannelOperation called, std::uint64_t* movedBytes, Run& run)
        : ChannelCall(called, movedBytes), m_run(run) {}
    void Forward() override {
      if constexpr (std::is_pointer_v<std::invoke_result_t<Run>>)
        text = m_run();
      else
        answer = static_cast<std::int64_t>(m_run());
    }

  private:
    Run& m_run;
  };

  template <class Run>
  std::invoke_result_t<Run> Pass(ChannelOperation operation, Run run, std::uint64_t* moved = nullptr) {
    using Answer = std::invoke_result_t<Run>;
    CallOf<Run> call(operation, moved, run);
    Around(call);
    if constexpr (std::is_pointer_v<Answer>)
      return call.text;
    else
      return static_cast<Answer>(call.answer);
  }

  std::unique_ptr<Channel> m_inner;
};

} // namespace host
