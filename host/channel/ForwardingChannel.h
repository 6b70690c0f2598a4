// Base of the decorators: every operation goes to the channel inside, by one way that a decorator can stand in.
#pragma once

#include "host/channel/Channel.h"
#include "host/channel/ChannelOperations.h"

#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>

namespace host {

// What an operation was called with, as far as it has such a thing; pointers are the caller's.
struct ChannelArguments {
  void* owner = nullptr; // of a lock
  std::uint32_t number =
      0;                  // a lock's time-out, what a text is about, a buffer's size, an index, which blocks to format
  std::int64_t code = 0;  // that a text is asked for
  char* buffer = nullptr; // for what is received
  std::string_view bytes{};   // to be sent
  const char* path = nullptr; // of a local file
  std::uint8_t fileId = 0;
  std::uint8_t fileType = 0;
  std::uint32_t fileMode = 0;
  std::uint32_t steps = 0;
  TransferProgressCallback callback = nullptr; // these two may be replaced before the call goes on
  void* context = nullptr;
  TDEVDIRENTRY* entry = nullptr;
  TDEVDIRINFO* info = nullptr;
};

// One call of an operation, as `ForwardingChannel::Around` sees it.
class ChannelCall {
public:
  ChannelCall(const ChannelCall&) = delete;
  ChannelCall& operator=(const ChannelCall&) = delete;

  const ChannelOperation operation;
  ChannelArguments& arguments;
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
  ChannelCall(ChannelOperation called, ChannelArguments& given, std::uint64_t* movedBytes)
      : operation(called), arguments(given), moved(movedBytes) {}
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
  std::int32_t Finish() override { return m_inner->Finish(); }
  bool HasEnded() override { return m_inner->HasEnded(); }
  std::string Notice() override { return m_inner->Notice(); }
  bool HasBeenOpen() override { return m_inner->HasBeenOpen(); }
  void WatchLine(LineWatcher watcher) override {
    if (m_inner)
      m_inner->WatchLine(std::move(watcher));
  }

  const char* GetInfoString(std::uint32_t what, std::int64_t code) override {
    return Pass(ChannelOperation::kGetInfoString, {.number = what, .code = code},
                [&](const ChannelArguments&) { return m_inner->GetInfoString(what, code); });
  }
  std::int32_t Lock(void* owner, std::uint32_t timeoutMs) override {
    return Pass(ChannelOperation::kLock, {.owner = owner, .number = timeoutMs},
                [&](const ChannelArguments&) { return m_inner->Lock(owner, timeoutMs); });
  }
  std::int32_t Unlock(void* owner) override {
    return Pass(ChannelOperation::kUnlock, {.owner = owner},
                [&](const ChannelArguments&) { return m_inner->Unlock(owner); });
  }
  std::uint32_t GetState() override {
    return Pass(ChannelOperation::kGetState, {}, [&](const ChannelArguments&) { return m_inner->GetState(); });
  }
  std::int32_t Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) override {
    return Pass(
        ChannelOperation::kReceive, {.number = bufferSize, .buffer = buffer},
        [&](const ChannelArguments&) { return m_inner->Receive(buffer, bufferSize, received); }, received);
  }
  std::int32_t Transmit(const char* data, std::uint64_t length, std::uint64_t* written) override {
    return Pass(
        ChannelOperation::kTransmit, {.bytes = BytesAt(data, length)},
        [&](const ChannelArguments&) { return m_inner->Transmit(data, length, written); }, written);
  }
  std::int32_t TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t fileId,
                                      std::uint8_t fileType, std::uint32_t fileMode, TransferProgressCallback callback,
                                      void* context, std::uint32_t flag, std::uint32_t steps) override {
    return Pass(ChannelOperation::kTransmitFileFromMemory,
                {.bytes = BytesAt(data, length),
                 .fileId = fileId,
                 .fileType = fileType,
                 .fileMode = fileMode,
                 .steps = steps,
                 .callback = callback,
                 .context = context},
                [&](const ChannelArguments& given) {
                  return m_inner->TransmitFileFromMemory(data, length, fileId, fileType, fileMode, given.callback,
                                                         given.context, flag, steps);
                });
  }
  std::int32_t TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType, std::uint32_t fileMode,
                            TransferProgressCallback callback, void* context, std::uint32_t flag,
                            std::uint32_t steps) override {
    return Pass(ChannelOperation::kTransmitFile,
                {.path = localPath,
                 .fileId = fileId,
                 .fileType = fileType,
                 .fileMode = fileMode,
                 .steps = steps,
                 .callback = callback,
                 .context = context},
                [&](const ChannelArguments& given) {
                  return m_inner->TransmitFile(localPath, fileId, fileType, fileMode, given.callback, given.context,
                                               flag, steps);
                });
  }
  std::int32_t ReadDirectory() override {
    return Pass(ChannelOperation::kReadDirectory, {},
                [&](const ChannelArguments&) { return m_inner->ReadDirectory(); });
  }
  std::uint64_t GetDirectoryEntryCount() override {
    return Pass(ChannelOperation::kGetDirectoryEntryCount, {},
                [&](const ChannelArguments&) { return m_inner->GetDirectoryEntryCount(); });
  }
  std::int32_t GetDirectoryEntry(std::uint32_t index, TDEVDIRENTRY* entry) override {
    return Pass(ChannelOperation::kGetDirectoryEntry, {.number = index, .entry = entry},
                [&](const ChannelArguments&) { return m_inner->GetDirectoryEntry(index, entry); });
  }
  std::int32_t GetDirectoryInfo(TDEVDIRINFO* info) override {
    return Pass(ChannelOperation::kGetDirectoryInfo, {.info = info},
                [&](const ChannelArguments&) { return m_inner->GetDirectoryInfo(info); });
  }
  std::int32_t DeleteDeviceFile(std::uint8_t fileId) override {
    return Pass(ChannelOperation::kDeleteDeviceFile, {.fileId = fileId},
                [&](const ChannelArguments&) { return m_inner->DeleteDeviceFile(fileId); });
  }
  std::int32_t FormatDevice(std::uint32_t usedBlocksOnly) override {
    return Pass(ChannelOperation::kFormatDevice, {.number = usedBlocksOnly},
                [&](const ChannelArguments&) { return m_inner->FormatDevice(usedBlocksOnly); });
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
  using AnswerOf = std::invoke_result_t<Run, const ChannelArguments&>;

  template <class Run>
  class CallOf final : public ChannelCall {
  public:
    CallOf(ChannelOperation called, ChannelArguments& given, std::uint64_t* movedBytes, Run& run)
        : ChannelCall(called, given, movedBytes), m_run(run) {}
    void Forward() override {
      if constexpr (std::is_pointer_v<AnswerOf<Run>>)
        text = m_run(arguments);
      else
        answer = static_cast<std::int64_t>(m_run(arguments));
    }

  private:
    Run& m_run;
  };

  template <class Run>
  AnswerOf<Run> Pass(ChannelOperation operation, ChannelArguments arguments, Run run, std::uint64_t* moved = nullptr) {
    CallOf<Run> call(operation, arguments, moved, run);
    Around(call);
    if constexpr (std::is_pointer_v<AnswerOf<Run>>)
      return call.text;
    else
      return static_cast<AnswerOf<Run>>(call.answer);
  }

  // Callers may pass nothing with a length.
  static std::string_view BytesAt(const char* data, std::uint64_t length) {
    return data ? std::string_view(data, static_cast<std::size_t>(length)) : std::string_view();
  }

  std::unique_ptr<Channel> m_inner;
};

} // namespace host
