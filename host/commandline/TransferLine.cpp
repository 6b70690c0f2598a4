#include "host/commandline/TransferLine.h"

#include <utility>

namespace host {
namespace {

// What shows before a transfer's first report: its bar, with the file's name and a blank in front or nothing.
bool IsEmptyBar(std::string_view line) {
  constexpr std::string_view kBar = "........................................";
  return line == kBar || (line.ends_with(kBar) && line[line.size() - kBar.size() - 1] == ' ');
}

// A report on its way to the client that wants it.
struct Report {
  TransferLine& line;
  TransferProgressCallback callback;
  void* context;

  static std::int32_t Pass(void* context, std::uint32_t stepsDone) {
    const auto& report = *static_cast<Report*>(context);
    report.line.SetReporting(true);
    const std::int32_t abort = report.callback(report.context, stepsDone);
    report.line.SetReporting(false);
    return abort;
  }
};

template <class Transfer>
std::int32_t Watched(TransferLine& line, TransferProgressCallback callback, void* context, Transfer transfer) {
  Report report{line, callback, context};
  line.BeginTransfer();
  const std::int32_t code = callback ? transfer(Report::Pass, &report) : transfer(nullptr, nullptr);
  line.EndTransfer();
  return code;
}

} // namespace

bool TransferLine::Write(std::string_view piece) {
  const bool isReturn = piece == "\r";
  if (m_mayRedraw || (!isReturn && !m_reporting && m_kept.empty()))
    return m_output.Write(piece);
  if (m_reporting) {
    if (isReturn)
      m_kept.clear();
    else
      m_kept += piece;
    return !m_output.Failed();
  }
  const bool isEmptyBar = m_kept == "\r" && IsEmptyBar(piece);
  if (!isEmptyBar)
    Flush();
  if (!isReturn && !isEmptyBar)
    return m_output.Write(piece);
  m_kept += piece;
  return !m_output.Failed();
}

void TransferLine::Flush() {
  if (m_kept.empty())
    return;
  m_output.Write(std::exchange(m_kept, {}));
}

void TransferLine::BeginTransfer() {
  if (m_kept.size() > 1) // an empty bar behind a carriage return
    m_kept.erase(0, 1);
  else
    Flush();
}

void TransferLine::EndTransfer() {
  if (!m_kept.empty() && !m_output.AtLineStart())
    m_output.Write("\n");
  Flush();
}

void TransferWatch::Around(ChannelCall& call) {
  m_line.Show();
  call.Forward();
}

std::int32_t TransferWatch::TransmitFileFromMemory(const char* data, std::uint64_t length, std::uint8_t fileId,
                                                   std::uint8_t fileType, std::uint32_t fileMode,
                                                   TransferProgressCallback callback, void* context, std::uint32_t flag,
                                                   std::uint32_t steps) {
  return Watched(m_line, callback, context, [&](TransferProgressCallback passing, void* report) {
    return ForwardingChannel::TransmitFileFromMemory(data, length, fileId, fileType, fileMode, passing, report, flag,
                                                     steps);
  });
}

std::int32_t TransferWatch::TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType,
                                         std::uint32_t fileMode, TransferProgressCallback callback, void* context,
                                         std::uint32_t flag, std::uint32_t steps) {
  return Watched(m_line, callback, context, [&](TransferProgressCallback passing, void* report) {
    return ForwardingChannel::TransmitFile(localPath, fileId, fileType, fileMode, passing, report, flag, steps);
  });
}

} // namespace host
