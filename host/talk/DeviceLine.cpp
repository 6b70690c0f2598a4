#include "host/talk/DeviceLine.h"

#include "host/channel/ChannelErrors.h"
#include "host/commandline/ExitCodes.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

constexpr std::uint32_t kLockMs = 500;
constexpr std::size_t kMostAtOnce = 65536; // bytes, so that a device that never stops does not keep anybody
constexpr std::uint32_t kPiece = 4096;     // bytes

} // namespace

DeviceLine::DeviceLine(std::string_view program, ChannelOptions options, std::string tracePath)
    : m_program(program), m_options(std::move(options)), m_tracePath(std::move(tracePath)) {}

DeviceLine::~DeviceLine() {
  Close();
}

void DeviceLine::Close() {
  if (m_channel)
    m_channel->Unlock(this);
  m_channel = nullptr;
}

tl::expected<void, OpenFailure> DeviceLine::Open() {
  Close();
  auto channel = OpenChannel(m_program, m_options, m_tracePath, m_records, m_trace);
  if (!channel)
    return tl::unexpected(channel.error());
  if (const std::int32_t code = (*channel)->Lock(this, kLockMs); code != 0) {
    const std::string reason = (*channel)->GetInfoString(OND_INFO_ERROR, code);
    return tl::unexpected(OpenFailure{code == kChannelLocked ? static_cast<int>(EONX_ERR_LOCKED) : kExitNoChannel,
                                      false, m_options.text + ": " + reason});
  }
  m_channel = std::move(*channel);
  return {};
}

std::int32_t DeviceLine::Send(std::string_view bytes) {
  std::uint64_t written = 0;
  const std::int32_t code = m_channel->Transmit(bytes.data(), bytes.size(), &written);
  if (code == 0)
    m_sent += bytes.size();
  return code;
}

tl::expected<std::string, std::int32_t> DeviceLine::Receive() {
  std::string bytes;
  char piece[kPiece];
  while (bytes.size() < kMostAtOnce) {
    std::uint64_t count = 0;
    const std::int32_t code = m_channel->Receive(piece, kPiece, &count);
    if (code != 0 && bytes.empty())
      return tl::unexpected(code);
    if (code != 0 || count == 0)
      break;
    bytes.append(piece, std::min<std::size_t>(count, kPiece));
  }
  m_received += bytes.size();
  return bytes;
}

std::int32_t DeviceLine::WaitUntilSent() {
  return m_channel->WaitUntilSent();
}

std::int32_t DeviceLine::Finish() {
  return m_channel ? m_channel->Finish() : 0;
}

bool DeviceLine::HasEnded() {
  return m_channel->HasEnded();
}

std::string DeviceLine::Reason(std::int32_t code) {
  return m_channel->GetInfoString(OND_INFO_ERROR, code);
}

std::string DeviceLine::Description() {
  if (!m_channel)
    return Name();
  const std::string description = m_channel->GetInfoString(OND_INFO_DESCRIPTION, 0);
  return description + ", " + m_channel->GetInfoString(OND_INFO_CONFIGURATION, 0);
}

bool DeviceLine::IsOpen() {
  return m_channel && m_channel->GetState() == 1;
}

} // namespace host
