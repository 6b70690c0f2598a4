#include "host/talk/TermSession.h"

#include "host/channel/ChannelErrors.h"
#include "host/commandline/ExitCodes.h"
#include "host/commandline/StandardStreams.h"
#include "host/support/Files.h"
#include "host/support/StateFolder.h"
#include "host/support/StreamSetup.h"
#include "host/talk/ClockText.h"

#include <thread>
#include <utility>

namespace host {
namespace {

constexpr std::chrono::milliseconds kRowTime{50}; // after which a row of bytes shows although it is not full
constexpr std::chrono::milliseconds kLookTime{200};
constexpr char kActionMark = '~';

std::string HistoryFile(bool isWanted) {
  const std::string folder = isWanted && Keyboard::IsThere() ? StateFolder() : std::string();
  return folder.empty() ? folder : PathInFolder(folder, "term-history");
}

} // namespace

TermSession::TermSession(std::string_view program, const TermArguments& arguments, const Unescape& unescape,
                         TermLog& log)
    : m_program(program), m_arguments(arguments), m_unescape(unescape), m_log(log),
      m_line(program, arguments.channel, arguments.trace), m_editor(HistoryFile(arguments.history)),
      m_plainMode(arguments.raw || !IsOutputTerminal() ? ViewMode::kRaw : ViewMode::kText), m_hex(arguments.hex),
      m_stamps(arguments.stamps), m_lineEnd(arguments.lineEnd) {
  RenewView();
}

int TermSession::Run() {
  if (const auto opened = m_line.Open(); !opened) {
    if (!opened.error().isTold)
      PrintMessage(m_program, opened.error().text);
    return opened.error().code;
  }
  const Interrupt interrupt([this](const InterruptCause&) { m_editor.Stop(); });
  Greet();
  const int code = ReadLines();
  if (m_plainMode == ViewMode::kText)
    Print(m_view->Break());
  else
    BreakView();
  m_editor.Rest();
  if (interrupt.Interrupted()) {
    PrintMessage(m_program, std::string("stopped by ") + interrupt.Interrupted());
    return EONX_ERR_SCRIPT;
  }
  if (m_editor.HasFailed()) {
    PrintMessage(m_program, "standard output cannot be written");
    return kExitStream;
  }
  if (const std::int32_t undone = code == 0 ? m_line.Finish() : 0; undone != 0) {
    PrintMessage(m_program, m_line.Name() + ": " + m_line.Reason(undone));
    return kExitNoChannel;
  }
  return code;
}

void TermSession::Greet() {
  m_log.WriteRemark("connected to " + m_line.Name());
  if (!m_editor.IsInteractive())
    return;
  m_editor.Take();
  const std::string end = m_lineEnd == "\r" ? "CR" : m_lineEnd == "\n" ? "LF" : m_lineEnd.empty() ? "nothing" : "CR LF";
  Print(m_line.Description() + "\nEnter sends the line and " + end +
        "; \\n, \\(x1B) and so on are escapes. ~help lists commands.\n"
        "Ctrl+C on an empty line, Ctrl+D or ~quit ends.\n");
}

int TermSession::ReadLines() {
  while (!m_code) {
    const Typed typed = m_editor.Read({}, [this] { Poll(); });
    switch (typed.kind) {
    case TypedKind::kLine:
      TakeLine(typed.text);
      break;
    case TypedKind::kInterrupt:
      if (typed.text.empty())
        return 0;
      break;
    case TypedKind::kEnd:
      if (!m_editor.IsInteractive())
        ShowLastAnswers();
      return m_code.value_or(0);
    case TypedKind::kStopped:
      return m_code.value_or(EONX_ERR_SCRIPT);
    }
  }
  return *m_code;
}

void TermSession::TakeLine(const std::string& text) {
  BreakView();
  if (text.empty() || text.front() != kActionMark)
    SendTyped(text, m_lineEnd);
  else if (text.size() > 1 && text[1] == kActionMark)
    SendTyped(text.substr(1), m_lineEnd);
  else
    RunAction(text.substr(1));
  Poll();
}

// --- to the device

void TermSession::SendTyped(const std::string& text, const std::string& end) {
  const auto bytes = m_unescape(text);
  if (!bytes)
    return Remark(bytes.error() + " Nothing is sent");
  m_log.WriteSent(text);
  SendBytes(*bytes + end);
}

bool TermSession::SendBytes(std::string_view bytes) {
  if (m_lost) {
    Remark("the connection is closed; ~reconnect opens it again");
    return false;
  }
  const std::int32_t code = bytes.empty() ? 0 : m_line.Send(bytes);
  if (code == 0)
    return true;
  Remark("not sent: " + m_line.Reason(code));
  if (!m_editor.IsInteractive())
    End(kExitNoChannel);
  return false;
}

// --- from the device

bool TermSession::Poll() {
  if (m_lost || m_code)
    return false;
  const auto received = m_line.Receive();
  if (!received)
    NoteProblem(received.error());
  if (!received || received->empty()) {
    if (Clock::now() - m_lastReceived >= kRowTime)
      Print(m_view->Pause());
    if (received)
      LookAtLine();
    return false;
  }
  m_lastReceived = Clock::now();
  m_log.WriteReceived(*received);
  Print(m_view->Feed(*received));
  if (m_log.TakeFailure())
    Remark(m_arguments.log + ": the log cannot be written; the session goes on without it");
  return true;
}

void TermSession::LookAtLine() {
  if (Clock::now() - m_lastLook < kLookTime)
    return;
  m_lastLook = Clock::now();
  NoteProblem(m_line.IsOpen() ? 0 : kNotOpen);
}

// A line may be found closed while bytes of it are still to be read: it has ended when they are.
void TermSession::NoteProblem(std::int32_t code) {
  const bool wasLost = std::exchange(m_lost, code != 0 && m_line.HasEnded());
  const bool hasEnded = m_lost && !wasLost;
  const bool isNew = code != std::exchange(m_problem, code);
  if (isNew && code == 0)
    return Remark("connected again");
  if (isNew || (hasEnded && m_editor.IsInteractive()))
    Remark(m_line.Reason(code) + (m_lost && m_editor.IsInteractive() ? "; ~reconnect opens the channel again" : ""));
  if (hasEnded && !m_editor.IsInteractive())
    End(kExitNoChannel);
}

void TermSession::ShowLastAnswers() {
  if (const std::int32_t code = m_lost ? 0 : m_line.WaitUntilSent(); code != 0) {
    Remark("not everything was sent: " + m_line.Reason(code));
    End(kExitNoChannel);
  }
  auto last = Clock::now();
  while (!m_code && !m_editor.IsStopped() && Clock::now() - last < m_arguments.silence) {
    if (Poll())
      last = Clock::now();
    else
      std::this_thread::sleep_for(LineEditor::kIdleTime);
  }
}

// --- to the user

// On a terminal the typed line has ended the row already.
void TermSession::BreakView() {
  Print(m_view->Pause());
  const std::string rest = m_editor.IsInteractive() ? m_view->Break() : std::string();
  if (rest != "\n")
    Print(rest);
}

void TermSession::RenewView() {
  if (m_view)
    Print(m_view->Break());
  m_view.emplace(m_hex ? ViewMode::kHex : m_plainMode,
                 m_stamps ? [] { return ClockText() + "  "; } : std::function<std::string()>());
}

void TermSession::Print(const std::string& text) {
  if (!m_editor.Print(text) && !m_code)
    End(kExitStream);
}

void TermSession::Remark(const std::string& text) {
  m_log.WriteRemark(text);
  if (m_editor.IsInteractive())
    Print(m_view->Break() + "-- " + text + "\n");
  else
    PrintMessage(m_program, m_line.Name() + ": " + text);
}

void TermSession::End(int code) {
  m_code = code;
  m_editor.Stop();
}

} // namespace host
