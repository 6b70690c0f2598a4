// A channel for tests that watches how a client treats it.
#pragma once

#include "frame/contract/OndDeviceClient.h"

#include <doctest/doctest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>
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
  virtual ~GuardedChannel() {
    if (!m_held.empty())
      m_violations.push_back(std::to_string(m_held.size()) + " locks were never given back");
    for (const std::string& violation : m_violations)
      FAIL_CHECK("channel: " << violation);
  }
  GuardedChannel(const GuardedChannel&) = delete;
  GuardedChannel& operator=(const GuardedChannel&) = delete;

  // The calls so far, oldest first: "Lock 500", "Transmit ver", "TransmitFile C:\x.bin 3 1 0 1 40", "Delete 3",
  // "GetInfoString -5" (for an error), "Unlock" and so on. Polls do not show: locks that do not wait, state, texts.
  // `beginning` picks those whose text begins so.
  std::vector<std::string> Calls(const std::string& beginning = "") const {
    const std::lock_guard guard(m_mutex);
    std::vector<std::string> calls = m_calls;
    std::erase_if(calls, [&](const std::string& call) { return !call.starts_with(beginning); });
    return calls;
  }
  void ForgetCalls() {
    const std::lock_guard guard(m_mutex);
    m_calls.clear();
  }
  // What the next calls of an operation answer, by its name above; then 0 again.
  void Fail(const std::string& operation, std::deque<std::int32_t> codes) {
    const std::lock_guard guard(m_mutex);
    m_codes[operation] = std::move(codes);
  }

  std::atomic<std::uint32_t> state = 1;
  // What the device holds; sending files does not change it. [set while nothing else goes on]
  std::vector<TDEVDIRENTRY> directory;
  TDEVDIRINFO info{512, 100, 3, 1000, 1536};
  // Called within each transfer, to report its progress; a code other than 0 is what the transfer answers.
  std::function<std::int32_t(TransferProgressCallback report, void* context)> duringTransfer;
  // Called within each Receive that does not fail, gives the number of bytes received; null: a silent device.
  std::function<std::uint64_t(char* buffer, std::uint32_t size)> duringReceive;

  // How many locks are held now.
  std::size_t LockDepth() const {
    const std::lock_guard guard(m_mutex);
    return m_held.size();
  }
  // Takes the violations so far, which then do not fail the test: for tests that provoke them.
  std::vector<std::string> TakeViolations() {
    const std::lock_guard guard(m_mutex);
    return std::exchange(m_violations, {});
  }

  // "error CODE", "Bench 4" or "115200 8N1".
  const char* GetInfoString(std::uint32_t what, std::int64_t code) override {
    const Visit visit(*this, "GetInfoString");
    if (what != OND_INFO_ERROR)
      return what == OND_INFO_DESCRIPTION ? "Bench 4" : "115200 8N1";
    const std::lock_guard guard(m_mutex);
    Record("GetInfoString " + std::to_string(code));
    m_errorText = "error " + std::to_string(code);
    return m_errorText.c_str();
  }
  std::int32_t Lock(void* owner, std::uint32_t timeoutMs) override {
    const Visit visit(*this, "Lock");
    std::unique_lock guard(m_mutex);
    const std::int32_t failure = timeoutMs == 0 ? 0 : Record("Lock " + std::to_string(timeoutMs));
    const auto free = [&] { return m_held.empty() || owner == m_owner; };
    if (failure != 0 || !m_unlocked.wait_for(guard, std::chrono::milliseconds(timeoutMs), free))
      return 1;
    m_owner = owner;
    m_held.push_back(timeoutMs);
    return 0;
  }
  std::int32_t Unlock(void* owner) override {
    const Visit visit(*this, "Unlock");
    const std::lock_guard guard(m_mutex);
    if (m_held.empty()) {
      m_violations.push_back("Unlock without Lock");
    } else if (owner != m_owner) {
      m_violations.push_back("Unlock by another owner than Lock");
    } else {
      if (m_held.back() != 0)
        Record("Unlock");
      m_held.pop_back();
      m_unlocked.notify_all();
    }
    return 0;
  }
  std::uint32_t GetState() override {
    const Visit visit(*this, "GetState");
    return state;
  }
  std::int32_t Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) override {
    const Visit visit(*this, "Receive");
    const std::int32_t code = Touch("Receive");
    *received = code == 0 && duringReceive ? duringReceive(buffer, bufferSize) : 0;
    return code;
  }
  std::int32_t Transmit(const char* data, std::uint64_t length, std::uint64_t* written) override {
    const Visit visit(*this, "Transmit");
    *written = length;
    return Touch("Transmit " + std::string(data, static_cast<std::size_t>(length)));
  }
  std::int32_t TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t fileId,
                                      std::uint8_t fileType, std::uint32_t fileMode, TransferProgressCallback callback,
                                      void* context, std::uint32_t flag, std::uint32_t steps) override {
    const Visit visit(*this, "TransmitFileFromMemory");
    return Transfer("TransmitFileFromMemory " + std::string(data, static_cast<std::size_t>(length)),
                    {fileId, fileType, fileMode, flag, steps}, callback, context);
  }
  std::int32_t TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType, std::uint32_t fileMode,
                            TransferProgressCallback callback, void* context, std::uint32_t flag,
                            std::uint32_t steps) override {
    const Visit visit(*this, "TransmitFile");
    return Transfer(std::string("TransmitFile ") + localPath, {fileId, fileType, fileMode, flag, steps}, callback,
                    context);
  }
  std::int32_t ReadDirectory() override {
    const Visit visit(*this, "ReadDirectory");
    return Touch("ReadDirectory");
  }
  std::uint64_t GetDirectoryEntryCount() override {
    const Visit visit(*this, "GetDirectoryEntryCount");
    Touch("Count");
    return directory.size();
  }
  std::int32_t GetDirectoryEntry(std::uint32_t index, TDEVDIRENTRY* entry) override {
    const Visit visit(*this, "GetDirectoryEntry");
    const std::int32_t code = Touch("Entry " + std::to_string(index));
    if (code == 0)
      *entry = directory.at(index);
    return code;
  }
  std::int32_t GetDirectoryInfo(TDEVDIRINFO* out) override {
    const Visit visit(*this, "GetDirectoryInfo");
    const std::int32_t code = Touch("Info");
    if (code == 0)
      *out = info;
    return code;
  }
  std::int32_t DeleteDeviceFile(std::uint8_t fileId) override {
    const Visit visit(*this, "DeleteDeviceFile");
    const std::int32_t code = Touch("Delete " + std::to_string(fileId));
    if (code == 0)
      std::erase_if(directory, [&](const TDEVDIRENTRY& entry) { return entry.fileId == fileId; });
    return code;
  }
  std::int32_t FormatDevice(std::uint32_t usedBlocksOnly) override {
    const Visit visit(*this, "FormatDevice");
    const std::int32_t code = Touch("Format " + std::to_string(usedBlocksOnly));
    if (code == 0)
      directory.clear();
    return code;
  }

protected:
  // Called when a client comes into an operation and when it leaves it, with nothing of the channel's held.
  virtual void Enter(const char* /*operation*/) {}
  virtual void Leave(const char* /*operation*/) {}

private:
  class Visit {
  public:
    Visit(GuardedChannel& channel, const char* operation) : m_channel(channel), m_operation(operation) {
      channel.Enter(operation);
    }
    ~Visit() { m_channel.Leave(m_operation); }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

  private:
    GuardedChannel& m_channel;
    const char* m_operation;
  };

  // Records a call and takes the code that it answers. `m_mutex` is held.
  std::int32_t Record(const std::string& call) {
    m_calls.push_back(call);
    std::deque<std::int32_t>& codes = m_codes[call.substr(0, call.find(' '))];
    if (codes.empty())
      return 0;
    const std::int32_t code = codes.front();
    codes.pop_front();
    return code;
  }

  // The same of a call that must happen under a lock.
  std::int32_t Touch(const std::string& call) {
    const std::lock_guard guard(m_mutex);
    if (m_held.empty())
      m_violations.push_back("not locked during " + call);
    return Record(call);
  }

  // The same of a file's.
  std::int32_t Transfer(const std::string& call, std::initializer_list<std::uint32_t> arguments,
                        TransferProgressCallback report, void* context) {
    std::string whole = call;
    for (const std::uint32_t argument : arguments)
      whole += " " + std::to_string(argument);
    const std::int32_t code = Touch(whole);
    const std::int32_t ownCode = duringTransfer ? duringTransfer(report, context) : 0;
    return ownCode != 0 ? ownCode : code;
  }

  mutable std::mutex m_mutex; // guards the fields below
  std::vector<std::string> m_calls;
  std::vector<std::string> m_violations;
  std::map<std::string, std::deque<std::int32_t>> m_codes; // by operation
  std::string m_errorText;
  std::condition_variable m_unlocked;
  void* m_owner = nullptr;           // null: not locked
  std::vector<std::uint32_t> m_held; // time limits of the locks
};

inline std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts)
    joined += (joined.empty() ? "" : ", ") + text;
  return joined;
}
