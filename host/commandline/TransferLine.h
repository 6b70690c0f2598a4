// What a file transfer shows, for output that cannot be drawn over: not every step of its bar, but the last one.
#pragma once

#include "host/channel/ForwardingChannel.h"
#include "host/commandline/StandardStreams.h"

#include <string>
#include <string_view>

namespace host {

// Stands between a script and standard output. A transfer redraws its line by a carriage return and the whole line;
// what comes from inside a transfer's reports is that for certain, whatever a script itself prints. Only the line that
// shows before the first report has to be told by its look, and is kept until it is clear whether a transfer begins.
// [the run's thread; a transfer's reports may come on another one]
class TransferLine {
public:
  // `mayRedraw`: everything goes out as it comes.
  TransferLine(StandardOutput& output, bool mayRedraw) : m_output(output), m_mayRedraw(mayRedraw) {}
  TransferLine(const TransferLine&) = delete;
  TransferLine& operator=(const TransferLine&) = delete;

  // A piece of the script's output. False once anything could not be written. Throws std::bad_alloc.
  bool Write(std::string_view piece);
  // Writes what is kept back.
  void Flush();
  // Puts on the screen what is written.
  void Show() { m_output.Show(); }

  // Around a transfer; its line goes out at its end, on a line of its own.
  void BeginTransfer();
  void EndTransfer();
  // Around each of its reports.
  void SetReporting(bool reporting) { m_reporting = reporting; }

private:
  StandardOutput& m_output;
  const bool m_mayRedraw;
  std::string m_kept; // a carriage return and perhaps an empty bar; within a transfer, its line
  bool m_reporting = false;
};

// Tells a TransferLine, which must outlive it, of the transfers that a channel does, and puts what is printed on the
// screen before any operation: it may wait. For one client.
class TransferWatch : public ForwardingChannel {
public:
  TransferWatch(std::unique_ptr<Channel> inner, TransferLine& line)
      : ForwardingChannel(std::move(inner)), m_line(line) {}

  std::int32_t TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t fileId,
                                      std::uint8_t fileType, std::uint32_t fileMode, TransferProgressCallback callback,
                                      void* context, std::uint32_t flag, std::uint32_t steps) override;
  std::int32_t TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType, std::uint32_t fileMode,
                            TransferProgressCallback callback, void* context, std::uint32_t flag,
                            std::uint32_t steps) override;

private:
  void Around(ChannelCall& call) override;

  TransferLine& m_line;
};

} // namespace host
