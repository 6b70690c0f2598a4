#include "scriptrt/builtin/DeviceFileFunctions.h"

#include "platform/Platform.h"
#include "util/ChannelText.h"
#include "util/JobFile.h"
#include "util/Path.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::uint32_t kSteps = 40;       // characters of the bar
constexpr std::uint32_t kTransferFlag = 1; // the contract's: always this

// A path as it is shown: what the script wrote with slashes stands behind a folder with backslashes.
std::string WithBackslashes(std::string path) {
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

// As it shows in the output, where a zero byte would end the line too early.
std::string Shown(const std::string& text) {
  return text.substr(0, text.find('\0'));
}

std::string NamePart(const std::string& path) {
  std::string name;
  SplitFileName(path, nullptr, &name);
  return Shown(name);
}

} // namespace

class CONXFileOp::Progress {
public:
  // `title` stands in front of the bar.
  Progress(const ScriptOutput& output, platform::StopEvent& stopEvent, std::string title)
      : m_output(output), m_stopEvent(stopEvent), m_line(std::move(title)), m_barStart(m_line.size()) {
    m_line.append(kSteps, '.');
  }

  // Over whatever the line showed before.
  void Show() const {
    m_output.Write("\r");
    m_output.Write(m_line.c_str());
  }

  // What the channel is given as the callback's context. Called on a thread of its choice; nothing here can throw.
  static std::int32_t OnStep(void* context, std::uint32_t stepsDone) noexcept {
    auto* progress = static_cast<Progress*>(context);
    std::fill_n(progress->m_line.begin() + static_cast<std::ptrdiff_t>(progress->m_barStart),
                std::min(stepsDone, kSteps), '#');
    progress->Show();
    return progress->m_stopEvent.IsSet() ? 1 : 0;
  }

private:
  const ScriptOutput& m_output;
  platform::StopEvent& m_stopEvent;
  std::string m_line;
  std::size_t m_barStart;
};

// An abandoned run asks the channel nothing any more.
std::string CONXFileOp::ChannelText(const SysCall& call, std::int32_t code) const {
  return call.context.StopEvent().IsAbandoned() ? std::to_string(code) : ChannelErrorText(*Services().channel, code);
}

ScriptError CONXFileOp::Finish(const SysCall& call, std::int32_t code, bool ignoreFailure) {
  const ScriptError stored = call.SetNumber(static_cast<std::uint32_t>(code), DataType::kUint32);
  return code != 0 && !ignoreFailure ? kSystemFunctionFailed : stored;
}

ScriptError CONXTransmitFile::Perform(const SysCall& call) {
  const std::string name = NamePart(std::string(call.TextAt(0)));
  Progress progress(Services().output, call.context.StopEvent(), name + " ");
  const std::int32_t code = Services().channel->TransmitFile(
      call.PathAt(0).c_str(), static_cast<std::uint8_t>(call.NumberAt(1)), static_cast<std::uint8_t>(call.NumberAt(2)),
      static_cast<std::uint32_t>(call.NumberAt(3)), Progress::OnStep, &progress, kTransferFlag, kSteps);
  Write(code == 0 ? " -> OK\n" : "\n" + ChannelText(call, code) + " during TransmitFile (" + name + ")\n");
  return Finish(call, code, call.NumberAtOr(4, 0) != 0);
}

ScriptError CONXTransmitFileFromString::Perform(const SysCall& call) {
  const std::string_view data = call.TextAt(0);
  Progress progress(Services().output, call.context.StopEvent(), "");
  progress.Show();
  if (call.context.StopEvent().IsAbandoned()) // by the output function
    return kProcessingAborted;
  const std::int32_t code = Services().channel->TransmitFileFromMemory(
      data.data(), data.size(), static_cast<std::uint8_t>(call.NumberAt(1)),
      static_cast<std::uint8_t>(call.NumberAt(2)), static_cast<std::uint32_t>(call.NumberAt(3)), Progress::OnStep,
      &progress, kTransferFlag, kSteps);
  Write(code == 0 ? " -> OK\n" : "\n" + ChannelText(call, code) + " during TransmitFileFromString\n");
  return Finish(call, code, call.NumberAtOr(4, 0) != 0);
}

ScriptError CONXExecuteJobFile::Perform(const SysCall& call) {
  const bool continueAfterError = call.NumberAtOr(1, 0) != 0;
  const bool ignoreFailure = call.NumberAtOr(2, 0) != 0;
  const std::string path = call.PathAt(0);
  // Entries are relative to the folder of the full path: the script may have written it with slashes of either kind.
  const std::string fullPath = platform::FullPath(path).value_or(path);
  std::vector<TFILEENTRY> entries;
  if (!LoadJobFile(fullPath.c_str(), &entries)) {
    Write("Could not load job file (" + Shown(WithBackslashes(path)) + ")\n");
    return ignoreFailure ? call.SetNumber(kSystemFunctionFailed, DataType::kUint32) : kSystemFunctionFailed;
  }
  std::int32_t firstFailure = 0;
  bool stopped = false;
  for (const TFILEENTRY& entry : entries) {
    stopped = call.context.StopEvent().IsSet();
    if (stopped || (firstFailure != 0 && !continueAfterError))
      break;
    Progress progress(Services().output, call.context.StopEvent(), NamePart(entry.path) + " ");
    progress.Show();
    if (call.context.StopEvent().IsAbandoned()) // by the output function
      return kProcessingAborted;
    const std::int32_t code =
        Services().channel->TransmitFile(entry.path.c_str(), entry.fileId, entry.fileType, entry.fileMode,
                                         Progress::OnStep, &progress, kTransferFlag, kSteps);
    Write(code == 0 ? " -> OK\n"
                    : "\n-> " + ChannelText(call, code) + " during ExecuteJobFile (" +
                          Shown(std::string(call.TextAt(0))) + ")\n");
    firstFailure = firstFailure != 0 ? firstFailure : code;
  }
  if (stopped && firstFailure == 0)
    return kProcessingAborted; // cut short, though nothing failed
  return Finish(call, firstFailure, ignoreFailure);
}
