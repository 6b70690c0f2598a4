#include "tests/support/GuardedChannel.h"

#include <doctest/doctest.h>

#include <chrono>
#include <utility>

GuardedChannel::~GuardedChannel() {
  if (!m_held.empty())
    m_violations.push_back(std::to_string(m_held.size()) + " locks were never given back");
  for (const std::string& violation : m_violations)
    FAIL_CHECK("channel: " << violation);
}

std::vector<std::string> GuardedChannel::Calls() const {
  const std::lock_guard guard(m_mutex);
  return m_calls;
}

std::vector<std::string> GuardedChannel::Calls(const std::string& beginning) const {
  std::vector<std::string> calls = Calls();
  std::erase_if(calls, [&](const std::string& call) { return !call.starts_with(beginning); });
  return calls;
}

void GuardedChannel::ForgetCalls() {
  const std::lock_guard guard(m_mutex);
  m_calls.clear();
}

void GuardedChannel::Fail(const std::string& operation, std::deque<std::int32_t> codes) {
  const std::lock_guard guard(m_mutex);
  m_codes[operation] = std::move(codes);
}

std::size_t GuardedChannel::LockDepth() const {
  const std::lock_guard guard(m_mutex);
  return m_held.size();
}

std::vector<std::string> GuardedChannel::TakeViolations() {
  const std::lock_guard guard(m_mutex);
  return std::exchange(m_violations, {});
}

std::int32_t GuardedChannel::Record(const std::string& call) {
  m_calls.push_back(call);
  std::deque<std::int32_t>& codes = m_codes[call.substr(0, call.find(' '))];
  if (codes.empty())
    return 0;
  const std::int32_t code = codes.front();
  codes.pop_front();
  return code;
}

std::int32_t GuardedChannel::Touch(const std::string& call) {
  const std::lock_guard guard(m_mutex);
  if (m_held.empty())
    m_violations.push_back("not locked during " + call);
  return Record(call);
}

std::int32_t GuardedChannel::Transfer(const std::string& call, std::initializer_list<std::uint32_t> arguments,
                                      TransferProgressCallback report, void* context) {
  std::string whole = call;
  for (const std::uint32_t argument : arguments)
    whole += " " + std::to_string(argument);
  const std::int32_t code = Touch(whole);
  const std::int32_t ownCode = duringTransfer ? duringTransfer(report, context) : 0;
  return ownCode != 0 ? ownCode : code;
}

const char* GuardedChannel::GetInfoString(std::uint32_t what, std::int64_t code) {
  if (what != OND_INFO_ERROR)
    return what == OND_INFO_DESCRIPTION ? "Bench 4" : "115200 8N1";
  const std::lock_guard guard(m_mutex);
  Record("GetInfoString " + std::to_string(code));
  m_errorText = "error " + std::to_string(code);
  return m_errorText.c_str();
}

std::int32_t GuardedChannel::Lock(void* owner, std::uint32_t timeoutMs) {
  std::unique_lock guard(m_mutex);
  const std::int32_t failure = timeoutMs == 0 ? 0 : Record("Lock " + std::to_string(timeoutMs));
  const auto free = [&] { return m_held.empty() || owner == m_owner; };
  if (failure != 0 || !m_unlocked.wait_for(guard, std::chrono::milliseconds(timeoutMs), free))
    return 1;
  m_owner = owner;
  m_held.push_back(timeoutMs);
  return 0;
}

std::int32_t GuardedChannel::Unlock(void* owner) {
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

std::int32_t GuardedChannel::Receive(char*, std::uint32_t, std::uint64_t* received) {
  *received = 0;
  return Touch("Receive");
}

std::int32_t GuardedChannel::Transmit(const char* data, std::uint64_t length, std::uint64_t* written) {
  *written = length;
  return Touch("Transmit " + std::string(data, static_cast<std::size_t>(length)));
}

std::int32_t GuardedChannel::TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t fileId,
                                                    std::uint8_t fileType, std::uint32_t fileMode,
                                                    TransferProgressCallback callback, void* context,
                                                    std::uint32_t flag, std::uint32_t steps) {
  return Transfer("TransmitFileFromMemory " + std::string(data, static_cast<std::size_t>(length)),
                  {fileId, fileType, fileMode, flag, steps}, callback, context);
}

std::int32_t GuardedChannel::TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType,
                                          std::uint32_t fileMode, TransferProgressCallback callback, void* context,
                                          std::uint32_t flag, std::uint32_t steps) {
  return Transfer(std::string("TransmitFile ") + localPath, {fileId, fileType, fileMode, flag, steps}, callback,
                  context);
}

std::int32_t GuardedChannel::ReadDirectory() {
  return Touch("ReadDirectory");
}

std::uint64_t GuardedChannel::GetDirectoryEntryCount() {
  Touch("Count");
  return directory.size();
}

std::int32_t GuardedChannel::GetDirectoryEntry(std::uint32_t index, TDEVDIRENTRY* entry) {
  const std::int32_t code = Touch("Entry " + std::to_string(index));
  if (code == 0)
    *entry = directory.at(index);
  return code;
}

std::int32_t GuardedChannel::GetDirectoryInfo(TDEVDIRINFO* out) {
  const std::int32_t code = Touch("Info");
  if (code == 0)
    *out = info;
  return code;
}

std::int32_t GuardedChannel::DeleteDeviceFile(std::uint8_t fileId) {
  const std::int32_t code = Touch("Delete " + std::to_string(fileId));
  if (code == 0)
    std::erase_if(directory, [&](const TDEVDIRENTRY& entry) { return entry.fileId == fileId; });
  return code;
}

std::int32_t GuardedChannel::FormatDevice(std::uint32_t usedBlocksOnly) {
  const std::int32_t code = Touch("Format " + std::to_string(usedBlocksOnly));
  if (code == 0)
    directory.clear();
  return code;
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts)
    joined += (joined.empty() ? "" : ", ") + text;
  return joined;
}
