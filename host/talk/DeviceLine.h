// The line to a device, for somebody who types: the channel, opened and reserved, again if need be, and what has gone
// over it.
#pragma once

#include "host/commandline/OpenChannel.h"

#include <cstdint>
#include <memory>
#include <string>

namespace host {

// [one thread]
class DeviceLine {
public:
  // `program` begins messages and must stay. An empty path: no trace is wanted.
  DeviceLine(std::string_view program, ChannelOptions options, std::string tracePath);
  ~DeviceLine();
  DeviceLine(const DeviceLine&) = delete;
  DeviceLine& operator=(const DeviceLine&) = delete;

  // Waits until the channel is open and reserves it; one that was open before is closed first. The operations need a
  // success; after a failure there is no channel.
  tl::expected<void, OpenFailure> Open();

  // 0, or a code.
  std::int32_t Send(std::string_view bytes);
  // What has come in, perhaps not all of it, perhaps nothing; or the code that tells why nothing comes.
  tl::expected<std::string, std::int32_t> Receive();
  std::int32_t WaitUntilSent();
  // Closed for good, and everything that had come in has been read.
  bool HasEnded();
  // For users.
  std::string Reason(std::int32_t code);

  // These do without a channel.
  std::int32_t Finish();
  const std::string& Name() const { return m_options.text; }
  std::string Description(); // "TCP connection to …, raw bytes"
  bool IsOpen();
  std::uint64_t Sent() const { return m_sent; }         // bytes
  std::uint64_t Received() const { return m_received; } // bytes

private:
  void Close();

  const std::string_view m_program;
  const ChannelOptions m_options;
  const std::string m_tracePath;
  TraceFork m_records;
  std::unique_ptr<TraceWriter> m_trace;
  std::unique_ptr<Channel> m_channel; // reserved for this object
  std::uint64_t m_sent = 0;
  std::uint64_t m_received = 0;
};

} // namespace host
