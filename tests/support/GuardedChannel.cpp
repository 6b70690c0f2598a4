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

std::int32_t GuardedChannel::RecordDeviceCall(std::string call) {
  const std::lock_guard guard(m_mutex);
  if (m_depth == 0)
    m_violations.push_back("not locked during " + call);
  m_calls.push_back(std::move(call));
  return 0;
}

const char* GuardedChannel::GetInfoString(std::uint32_t what, std::int64_t code) {
  Record("GetInfoString " + std::to_string(what) + " " + std::to_string(code));
  return "text of the channel";
}

std::int32_t GuardedChannel::Lock(void* owner, std::uint32_t timeoutMs) {
  Record("Lock");
  std::unique_lock guard(m_mutex);
  const auto free = [&] { return m_depth == 0 || owner == m_owner; };
  if (!m_unlocked.wait_for(guard, std::chrono::milliseconds(timeoutMs), free))
    return 1;
  m_owner = owner;
  ++m_depth;
  return 0;
}

std::int32_t GuardedChannel::Unlock(void* owner) {
  Record("Unlock");
  const std::lock_guard guard(m_mutex);
  if (m_depth == 0) {
    m_violations.push_back("Unlock without Lock");
  } else if (owner != m_owner) {
    m_violations.push_back("Unlock by another owner than Lock");
  } else {
    --m_depth;
    m_unlocked.notify_all();
  }
  return 0;
}

std::uint32_t GuardedChannel::GetState() {
  Record("GetState");
  return 1;
}

std::int32_t GuardedChannel::Receive(char*, std::uint32_t, std::uint64_t* received) {
  *received = 0;
  return RecordDeviceCall("Receive");
}

std::int32_t GuardedChannel::Transmit(const char* data, std::uint64_t length, std::uint64_t* written) {
  *written = length;
  return RecordDeviceCall("Transmit " + std::string(data, static_cast<std::size_t>(length)));
}

namespace {

std::string FileArguments(std::uint8_t fileId, std::uint8_t fileType, std::uint32_t fileMode) {
  return " " + std::to_string(fileId) + " " + std::to_string(fileType) + " " + std::to_string(fileMode);
}

} // namespace

std::int32_t GuardedChannel::TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t fileId,
                                                    std::uint8_t fileType, std::uint32_t fileMode,
                                                    TransferProgressCallback, void*, std::uint32_t, std::uint32_t) {
  return RecordDeviceCall("TransmitFileFromMemory " + std::string(data, static_cast<std::size_t>(length)) +
                          FileArguments(fileId, fileType, fileMode));
}

std::int32_t GuardedChannel::TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType,
                                          std::uint32_t fileMode, TransferProgressCallback, void*, std::uint32_t,
                                          std::uint32_t) {
  return RecordDeviceCall(std::string("TransmitFile ") + localPath + FileArguments(fileId, fileType, fileMode));
}

std::int32_t GuardedChannel::ReadDirectory() {
  return RecordDeviceCall("ReadDirectory");
}

std::uint64_t GuardedChannel::GetDirectoryEntryCount() {
  RecordDeviceCall("GetDirectoryEntryCount");
  return 0;
}

std::int32_t GuardedChannel::GetDirectoryEntry(std::uint32_t index, TDEVDIRENTRY*) {
  return RecordDeviceCall("GetDirectoryEntry " + std::to_string(index));
}

std::int32_t GuardedChannel::GetDirectoryInfo(TDEVDIRINFO* info) {
  *info = {};
  return RecordDeviceCall("GetDirectoryInfo");
}

std::int32_t GuardedChannel::DeleteDeviceFile(std::uint8_t fileId) {
  return RecordDeviceCall("DeleteDeviceFile " + std::to_string(fileId));
}

std::int32_t GuardedChannel::FormatDevice(std::uint32_t usedBlocksOnly) {
  return RecordDeviceCall("FormatDevice " + std::to_string(usedBlocksOnly));
}
