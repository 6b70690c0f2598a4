#include "host/channel/FaultyChannel.h"

#include "host/support/Text.h"

#include <charconv>
#include <string_view>

namespace host {
namespace {

// In the order of FaultyOperation.
constexpr std::array<std::string_view, kFaultyOperationCount> kNames = {
    "Lock",
    "Unlock",
    "GetState",
    "Receive",
    "Transmit",
    "TransmitFileFromMemory",
    "TransmitFile",
    "ReadDirectory",
    "GetDirectoryEntry",
    "GetDirectoryInfo",
    "DeleteDeviceFile",
    "FormatDevice",
};

std::optional<FaultyOperation> FindOperation(std::string_view name) {
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    if (EqualIgnoringCase(kNames[i], name))
      return static_cast<FaultyOperation>(i);
  }
  return std::nullopt;
}

std::string UnknownOperation(std::string_view name) {
  std::string text = "unknown operation " + Quoted(name) + "; there are";
  for (const std::string_view known : kNames)
    text.append(known == kNames.front() ? " " : ", ").append(known);
  return text;
}

} // namespace

std::optional<Fault> ParseFault(const std::string& text, std::string& error) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos) {
    error = "expected OPERATION[:N]=CODE, as in TransmitFile:2=6";
    return std::nullopt;
  }
  const std::string_view target = std::string_view(text).substr(0, equals);
  const std::string_view code = std::string_view(text).substr(equals + 1);
  const std::size_t colon = target.find(':');
  const std::string_view name = target.substr(0, colon);

  const auto operation = FindOperation(name);
  if (!operation) {
    error = UnknownOperation(name);
    return std::nullopt;
  }
  Fault fault{*operation, 0, 0};
  if (colon != std::string_view::npos && (!ParseNumber(target.substr(colon + 1), fault.call) || fault.call == 0)) {
    error = Quoted(target.substr(colon + 1)) + " is not the number of a call (1, 2, ...)";
    return std::nullopt;
  }
  if (!ParseNumber(code, fault.code)) {
    error = Quoted(code) + " is not a code (-2147483648 to 2147483647)";
    return std::nullopt;
  }
  return fault;
}

FaultyChannel::FaultyChannel(std::unique_ptr<Channel> inner, std::vector<Fault> faults)
    : ForwardingChannel(std::move(inner)), m_faults(std::move(faults)) {}

std::optional<std::int32_t> FaultyChannel::NextFault(FaultyOperation operation) {
  std::uint64_t call = 0;
  {
    const std::lock_guard guard(m_mutex);
    call = ++m_calls[static_cast<std::size_t>(operation)];
  }
  for (const Fault& fault : m_faults) {
    if (fault.operation == operation && (fault.call == 0 || fault.call == call))
      return fault.code;
  }
  return std::nullopt;
}

std::int32_t FaultyChannel::Lock(void* owner, std::uint32_t timeoutMs) {
  if (const auto code = NextFault(FaultyOperation::kLock))
    return *code;
  return ForwardingChannel::Lock(owner, timeoutMs);
}

std::int32_t FaultyChannel::Unlock(void* owner) {
  // Nobody looks at the answer, so a lock that stayed taken would only lock every client out for good.
  const std::int32_t answer = ForwardingChannel::Unlock(owner);
  return NextFault(FaultyOperation::kUnlock).value_or(answer);
}

std::uint32_t FaultyChannel::GetState() {
  if (const auto code = NextFault(FaultyOperation::kGetState))
    return static_cast<std::uint32_t>(*code);
  return ForwardingChannel::GetState();
}

std::int32_t FaultyChannel::Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) {
  if (const auto code = NextFault(FaultyOperation::kReceive)) {
    if (received != nullptr)
      *received = 0;
    return *code;
  }
  return ForwardingChannel::Receive(buffer, bufferSize, received);
}

std::int32_t FaultyChannel::Transmit(const char* data, std::uint64_t length, std::uint64_t* written) {
  if (const auto code = NextFault(FaultyOperation::kTransmit)) {
    if (written != nullptr)
      *written = 0;
    return *code;
  }
  return ForwardingChannel::Transmit(data, length, written);
}

std::int32_t FaultyChannel::TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t fileId,
                                                   std::uint8_t fileType, std::uint32_t fileMode,
                                                   TransferProgressCallback callback, void* context, std::uint32_t flag,
                                                   std::uint32_t steps) {
  if (const auto code = NextFault(FaultyOperation::kTransmitFileFromMemory))
    return *code;
  return ForwardingChannel::TransmitFileFromMemory(data, length, fileId, fileType, fileMode, callback, context, flag,
                                                   steps);
}

std::int32_t FaultyChannel::TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType,
                                         std::uint32_t fileMode, TransferProgressCallback callback, void* context,
                                         std::uint32_t flag, std::uint32_t steps) {
  if (const auto code = NextFault(FaultyOperation::kTransmitFile))
    return *code;
  return ForwardingChannel::TransmitFile(localPath, fileId, fileType, fileMode, callback, context, flag, steps);
}

std::int32_t FaultyChannel::ReadDirectory() {
  if (const auto code = NextFault(FaultyOperation::kReadDirectory))
    return *code;
  return ForwardingChannel::ReadDirectory();
}

std::int32_t FaultyChannel::GetDirectoryEntry(std::uint32_t index, TDEVDIRENTRY* entry) {
  if (const auto code = NextFault(FaultyOperation::kGetDirectoryEntry))
    return *code;
  return ForwardingChannel::GetDirectoryEntry(index, entry);
}

std::int32_t FaultyChannel::GetDirectoryInfo(TDEVDIRINFO* info) {
  if (const auto code = NextFault(FaultyOperation::kGetDirectoryInfo))
    return *code;
  return ForwardingChannel::GetDirectoryInfo(info);
}

std::int32_t FaultyChannel::DeleteDeviceFile(std::uint8_t fileId) {
  if (const auto code = NextFault(FaultyOperation::kDeleteDeviceFile))
    return *code;
  return ForwardingChannel::DeleteDeviceFile(fileId);
}

std::int32_t FaultyChannel::FormatDevice(std::uint32_t usedBlocksOnly) {
  if (const auto code = NextFault(FaultyOperation::kFormatDevice))
    return *code;
  return ForwardingChannel::FormatDevice(usedBlocksOnly);
}

} // namespace host
