#include "host/talk/SendCommand.h"

#include "host/channel/ChannelErrors.h"
#include "host/commandline/ChannelArguments.h"
#include "host/commandline/ExitCodes.h"
#include "host/commandline/Seconds.h"
#include "host/commandline/StandardStreams.h"
#include "host/commandline/TraceCommand.h"
#include "host/support/Interrupt.h"
#include "host/support/StreamSetup.h"
#include "host/support/Text.h"
#include "host/talk/AnswerView.h"
#include "host/talk/DeviceLine.h"

#include <optional>
#include <thread>
#include <vector>

namespace host {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds kPollTime{5};
constexpr Milliseconds kUsualTimeout{5000}; // for a text that is waited for
constexpr Milliseconds kUsualSilence{500};

struct SendArguments {
  ChannelOptions channel;
  std::string trace;
  std::vector<std::string> texts; // bytes, as the next one
  std::string wait;               // empty: the answer is over when the device is silent
  std::optional<Milliseconds> timeout;
  Milliseconds silence = kUsualSilence;
  bool hex = false;
  bool raw = false;
};

// Otherwise what is wrong, with the name of the option.
tl::expected<std::string, std::string> ReadText(const std::string& name, const std::string& text,
                                                const Unescape& unescape) {
  auto bytes = unescape(text);
  if (!bytes)
    return tl::unexpected(name + " " + Quoted(text) + ": " + bytes.error());
  if (bytes->empty())
    return tl::unexpected(name + ": the text is empty");
  return std::move(*bytes);
}

tl::expected<SendArguments, std::string> ReadArguments(const CommandLine& line, const Unescape& unescape) {
  SendArguments arguments;
  const auto channel = ReadChannelOptions(line);
  const auto trace = ReadTracePath(line);
  const auto timeout = ReadSeconds(line, "--timeout");
  const auto silence = ReadSeconds(line, "--silence");
  for (const std::string* error : {channel ? nullptr : &channel.error(), trace ? nullptr : &trace.error(),
                                   timeout ? nullptr : &timeout.error(), silence ? nullptr : &silence.error()}) {
    if (error)
      return tl::unexpected(*error);
  }
  arguments.channel = *channel;
  arguments.trace = *trace;
  arguments.timeout = *timeout;
  arguments.silence = silence->value_or(kUsualSilence);
  arguments.hex = line.Has("--hex");
  arguments.raw = line.Has("--raw");
  for (const std::string& text : line.All("TEXT")) {
    auto bytes = ReadText("TEXT", text, unescape);
    if (!bytes)
      return tl::unexpected(bytes.error());
    arguments.texts.push_back(std::move(*bytes));
  }
  if (!line.Has("--wait"))
    return arguments;
  auto wait = ReadText("--wait", line.Value("--wait", ""), unescape);
  if (!wait)
    return tl::unexpected(wait.error());
  arguments.wait = std::move(*wait);
  if (!arguments.timeout)
    arguments.timeout = kUsualTimeout;
  return arguments;
}

// Finds a text in bytes that come in pieces.
class TextFinder {
public:
  explicit TextFinder(std::string text) : m_text(std::move(text)) {}

  // How many bytes of this piece there are up to the end of the text; nothing when it is not there yet.
  std::optional<std::size_t> Find(std::string_view piece) {
    if (m_text.empty())
      return std::nullopt;
    const std::size_t before = m_seen.size();
    m_seen += piece;
    const std::size_t found = m_seen.find(m_text);
    if (found != std::string::npos)
      return found + m_text.size() - before;
    if (m_seen.size() >= m_text.size())
      m_seen.erase(0, m_seen.size() - m_text.size() + 1);
    return std::nullopt;
  }

private:
  const std::string m_text;
  std::string m_seen; // the end of what has come, too short for the text
};

ViewMode ModeOf(const SendArguments& arguments) {
  if (arguments.hex)
    return ViewMode::kHex;
  return arguments.raw || !IsOutputTerminal() ? ViewMode::kRaw : ViewMode::kText;
}

class SendSession {
public:
  SendSession(std::string_view program, const SendArguments& arguments)
      : m_program(program), m_arguments(arguments), m_line(program, arguments.channel, arguments.trace),
        m_view(ModeOf(arguments)), m_finder(arguments.wait) {}

  // Returns the process's exit code.
  int Run() {
    if (const auto opened = m_line.Open(); !opened) {
      if (!opened.error().isTold)
        PrintMessage(m_program, opened.error().text);
      return opened.error().code;
    }
    int code = SendAll();
    if (code == 0)
      code = PrintAnswer();
    if (ModeOf(m_arguments) != ViewMode::kRaw)
      m_output.Write(m_view.Break());
    if (const int outputCode = ExitCodeOf(m_program, m_output); outputCode != 0)
      return outputCode;
    if (const std::int32_t undone = code == 0 ? m_line.Finish() : 0; undone != 0)
      return Fail(m_line.Reason(undone));
    return code;
  }

private:
  int SendAll() {
    for (const std::string& text : m_arguments.texts) {
      if (const std::int32_t code = m_line.Send(text); code != 0)
        return Fail(m_line.Reason(code));
    }
    if (const std::int32_t code = m_line.WaitUntilSent(); code != 0)
      return Fail("not everything was sent: " + m_line.Reason(code));
    return 0;
  }

  int PrintAnswer() {
    const Interrupt interrupt([](const InterruptCause&) {});
    const Clock::time_point begun = Clock::now();
    Clock::time_point last = begun; // something came
    while (!m_output.Failed()) {
      const auto received = m_line.Receive();
      if (!received)
        return Fail(m_line.Reason(received.error()));
      if (received && !received->empty()) {
        if (Show(*received))
          return 0;
        last = Clock::now();
      } else {
        std::this_thread::sleep_for(kPollTime);
      }
      if (interrupt.Interrupted())
        return Fail(std::string("stopped by ") + interrupt.Interrupted(), EONX_ERR_SCRIPT);
      if (m_arguments.timeout && Clock::now() - begun >= *m_arguments.timeout)
        return m_arguments.wait.empty() ? 0 : Fail("the text of --wait has not come", kExitTimeout);
      if (m_arguments.wait.empty() && Clock::now() - last >= m_arguments.silence)
        return m_line.IsOpen() ? 0 : Fail(m_line.Reason(kNotOpen)); // a lost line is silent too
    }
    return 0;
  }

  // True when the text has come; what follows it is nobody's.
  bool Show(std::string_view bytes) {
    const auto end = m_finder.Find(bytes);
    m_output.Write(m_view.Feed(bytes.substr(0, end.value_or(bytes.size()))));
    return end.has_value();
  }

  int Fail(const std::string& text, int code = kExitNoChannel) {
    m_output.Show();
    PrintMessage(m_program, m_line.Name() + ": " + text);
    return code;
  }

  const std::string_view m_program;
  const SendArguments& m_arguments;
  DeviceLine m_line;
  StandardOutput m_output;
  AnswerView m_view;
  TextFinder m_finder;
};

} // namespace

int SendCommand(std::string_view program, const CommandLine& line, const Unescape& unescape) {
  const auto arguments = ReadArguments(line, unescape);
  if (!arguments) {
    PrintMessage(program, arguments.error());
    return kExitUsage;
  }
  return SendSession(program, *arguments).Run();
}

} // namespace host
