#include "tests/support/GuardedChannel.h"

#include <doctest/doctest.h>

#include <chrono>
#include <utility>

GuardedChannel::~GuardedChannel() {
  if (m_depth != 0)
    m_violations.push_back(std::to_string(m_depth) + " locks were never given back");
  for (const std::string& violation : m_violations)
    FAIL_CHECK("channel: " << violation);
}

std::vector<std::string> GuardedChannel::Calls() const {
  const std::lock_guard guard(m_mutex);
  return m_calls;
}

void GuardedChannel::ForgetCalls() {
  const std::lock_guard guard(m_mutex);
  m_calls.clear();
}

std::size_t GuardedChannel::LockDepth() const {
  const std::lock_guard guard(m_mutex);
  return m_depth;
}

std::vector<std::string> GuardedChannel::TakeViolations() {
  const std::lock_guard guard(m_mutex);
  return std::exchange(m_violations, {});
}

void GuardedChannel::Record(std::string call) {
  const std::lock_guard guard(m_mutex);
  m_calls.push_back(std::move(call));
}

void GuardedChannel::RecordDeviceCall(std::string call) {
  const std::lock_guard guard(m_mutex);
  if (m_depth == 0)
    m_violations.push_back("not locked during " + call);
  m_calls.push_back(std::move(call));
}

const char* GuardedChannel::GetInfoString(std::uint32_t what, std::int64_t code) {
  Record("GetInfoString " + std::to_string(what) + " " + std::to_string(code));
  return m_inner != nullptr ? m_inner->GetInfoString(what, code) : "text of the channel";
}

std::int32_t GuardedChannel::Lock(void* owner, std::uint32_t timeoutMs) {
  Record("Lock");
  const std::int32_t answer = m_inner != nullptr ? m_inner->Lock(owner, timeoutMs) : 0;
  std::unique_lock guard(m_mutex);
  // Without a channel inside there is nobody else who would let a second owner wait.
  const auto free = [&] { return m_depth == 0 || owner == m_owner; };
  if (m_inner == nullptr && !m_unlocked.wait_for(guard, std::chrono::milliseconds(timeoutMs), free))
    return 1;
  if (answer == 0) {
    m_owner = owner;
    ++m_depth;
  }
  return answer;
}

std::int32_t GuardedChannel::Unlock(void* owner) {
  Record("Unlock");
  {
    const std::lock_guard guard(m_mutex);
    if (m_depth == 0) {
      m_violations.push_back("Unlock without Lock");
    } else if (owner != m_owner) {
      m_violations.push_back("Unlock by another owner than Lock");
    } else {
      --m_depth; // before the channel inside lets the next owner in
      m_unlocked.notify_all();
    }
  }
  return m_inner != nullptr ? m_inner->Unlock(owner) : 0;
}

std::uint32_t GuardedChannel::GetState() {
  Record("GetState");
  return m_inner != nullptr ? m_inner->GetState() : 1;
}

std::int32_t GuardedChannel::Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) {
  RecordDeviceCall("Receive");
  if (m_inner != nullptr)
    return m_inner->Receive(buffer, bufferSize, received);
  *received = 0;
  return 0;
}

std::int32_t GuardedChannel::Transmit(const char* data, std::uint64_t length, std::uint64_t* written) {
  RecordDeviceCall("Transmit " + std::string(data, static_cast<std::size_t>(length)));
  if (m_inner != nullptr)
    return m_inner->Transmit(data, length, written);
  *written = length;
  return 0;
}

namespace {

std::string FileArguments(std::uint8_t fileId, std::uint8_t fileType, std::uint32_t fileMode) {
  return " " + std::to_string(fileId) + " " + std::to_string(fileType) + " " + std::to_string(fileMode);
}

} // namespace

std::int32_t GuardedChannel::TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t fileId,
                                                    std::uint8_t fileType, std::uint32_t fileMode,
                                                    TransferProgressCallback callback, void* context,
                                                    std::uint32_t flag, std::uint32_t steps) {
  RecordDeviceCall("TransmitFileFromMemory " + std::string(data, static_cast<std::size_t>(length)) +
                   FileArguments(fileId, fileType, fileMode));
  return m_inner != nullptr
             ? m_inner->TransmitFileFromMemory(data, length, fileId, fileType, fileMode, callback, context, flag, steps)
             : 0;
}

std::int32_t GuardedChannel::TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType,
                                          std::uint32_t fileMode, TransferProgressCallback callback, void* context,
                                          std::uint32_t flag, std::uint32_t steps) {
  RecordDeviceCall(std::string("TransmitFile ") + localPath + FileArguments(fileId, fileType, fileMode));
  return m_inner != nullptr
             ? m_inner->TransmitFile(localPath, fileId, fileType, fileMode, callback, context, flag, steps)
             : 0;
}

std::int32_t GuardedChannel::ReadDirectory() {
  RecordDeviceCall("ReadDirectory");
  return m_inner != nullptr ? m_inner->ReadDirectory() : 0;
}

std::uint64_t GuardedChannel::GetDirectoryEntryCount() {
  RecordDeviceCall("GetDirectoryEntryCount");
  return m_inner != nullptr ? m_inner->GetDirectoryEntryCount() : 0;
}

std::int32_t GuardedChannel::GetDirectoryEntry(std::uint32_t index, TDEVDIRENTRY* entry) {
  RecordDeviceCall("GetDirectoryEntry " + std::to_string(index));
  return m_inner != nullptr ? m_inner->GetDirectoryEntry(index, entry) : 0;
}

std::int32_t GuardedChannel::GetDirectoryInfo(TDEVDIRINFO* info) {
  RecordDeviceCall("GetDirectoryInfo");
  if (m_inner != nullptr)
    return m_inner->GetDirectoryInfo(info);
  *info = {};
  return 0;
}

std::int32_t GuardedChannel::DeleteDeviceFile(std::uint8_t fileId) {
  RecordDeviceCall("DeleteDeviceFile " + std::to_string(fileId));
  return m_inner != nullptr ? m_inner->DeleteDeviceFile(fileId) : 0;
}

std::int32_t GuardedChannel::FormatDevice(std::uint32_t usedBlocksOnly) {
  RecordDeviceCall("FormatDevice " + std::to_string(usedBlocksOnly));
  return m_inner != nullptr ? m_inner->FormatDevice(usedBlocksOnly) : 0;
}
