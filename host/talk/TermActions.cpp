// The commands of the terminal for the console.
#include "host/talk/TermSession.h"

#include "host/support/Files.h"
#include "host/support/Text.h"

#include <algorithm>

namespace host {
namespace {

constexpr std::uint64_t kLargestFile = 64 << 20; // bytes
constexpr std::size_t kFilePiece = 4096;         // bytes, on their way at once

std::string Trimmed(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(' ');
  return begin == std::string::npos ? std::string() : text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

} // namespace

struct TermSession::Action {
  std::string_view name;
  std::string_view shortName; // empty: none
  std::string_view argument;  // what it looks like; empty: it has none
  std::string_view description;
  void (TermSession::*run)(const std::string& argument);
};

std::span<const TermSession::Action> TermSession::Actions() {
  static constexpr Action kActions[] = {
      {"help", "?", "", "this list", &TermSession::ShowHelp},
      {"quit", ".", "", "ends, as Ctrl+D", &TermSession::Quit},
      {"send", "", "TEXT", "sends TEXT without a line end; \\3 is what Ctrl+C means to many devices",
       &TermSession::SendPart},
      {"file", "", "FILE", "sends a file as it is", &TermSession::SendFile},
      {"hex", "", "", "shows bytes instead of text, and text again", &TermSession::ToggleHex},
      {"stamps", "", "", "shows the time in front of each line, and no more", &TermSession::ToggleStamps},
      {"end", "", "END", "what follows a typed line: cr, lf, crlf or none", &TermSession::SetLineEnd},
      {"clear", "", "", "clears the screen, as Ctrl+L", &TermSession::Clear},
      {"state", "", "", "shows the channel and what has gone over it", &TermSession::ShowState},
      {"reconnect", "", "", "closes the channel and opens it again", &TermSession::Reconnect},
  };
  return kActions;
}

// `text` stands behind the tilde.
void TermSession::RunAction(const std::string& text) {
  const std::size_t blank = std::min(text.find(' '), text.size());
  const std::string name = text.substr(0, blank);
  const std::string argument = blank < text.size() ? text.substr(blank + 1) : std::string();
  for (const Action& action : Actions()) {
    if (name != action.name && (action.shortName.empty() || name != action.shortName))
      continue;
    if (Trimmed(argument).empty() != action.argument.empty())
      return Remark("~" + name +
                    (action.argument.empty()
                         ? " stands alone"
                         : " " + std::string(action.argument) + ": " + std::string(action.argument) + " is missing"));
    return (this->*action.run)(argument);
  }
  Remark("there is no command ~" + name + "; ~help lists them, ~~ sends a ~");
}

void TermSession::ShowHelp(const std::string&) {
  std::string text;
  for (const Action& action : Actions()) {
    std::string call = "~" + std::string(action.name);
    if (!action.shortName.empty())
      call.append(" ~").append(action.shortName);
    if (!action.argument.empty())
      call.append(" ").append(action.argument);
    constexpr std::size_t kWidth = 14;
    call.resize(std::max(kWidth, call.size() + 1), ' ');
    text.append("  ").append(call).append(action.description).append("\n");
  }
  Print(text + "  ~~TEXT        sends a line that begins with ~\n"
               "Up and Down go through the lines typed before. Ctrl+C discards the line.\n");
}

void TermSession::Quit(const std::string&) {
  End(0);
}

void TermSession::SendPart(const std::string& argument) {
  SendTyped(argument, {});
}

void TermSession::SendFile(const std::string& argument) {
  const std::string path = Trimmed(argument);
  const ReadResult bytes = ReadWholeFile(path, kLargestFile);
  if (!bytes)
    return Remark(path + (bytes.error() == ReadFailure::kTooLarge ? ": is too large" : ": cannot be read"));
  m_editor.Rest(); // so that Ctrl+C interrupts
  m_log.WriteSent("~file " + path);
  for (std::size_t sent = 0; sent < bytes->size() && !m_editor.IsStopped(); sent += kFilePiece) {
    if (!SendBytes(std::string_view(*bytes).substr(sent, kFilePiece)))
      return;
    if (const std::int32_t code = m_line.WaitUntilSent(); code != 0)
      return Remark("not everything was sent: " + m_line.Reason(code));
    Poll();
  }
  if (!m_editor.IsStopped())
    Remark(std::to_string(bytes->size()) + (bytes->size() == 1 ? " byte sent" : " bytes sent"));
}

void TermSession::ToggleHex(const std::string&) {
  m_hex = !m_hex;
  RenewView();
  Remark(m_hex ? "bytes are shown" : "text is shown");
}

void TermSession::ToggleStamps(const std::string&) {
  m_stamps = !m_stamps;
  RenewView();
  Remark(m_stamps ? "times are shown" : "no times are shown");
}

void TermSession::SetLineEnd(const std::string& argument) {
  const auto end = ReadLineEnd(Trimmed(argument));
  if (!end)
    return Remark(end.error());
  m_lineEnd = *end;
}

void TermSession::Clear(const std::string&) {
  m_editor.ClearScreen();
}

void TermSession::ShowState(const std::string&) {
  Remark(m_line.Description() + ", " + (m_line.IsOpen() ? "open" : "closed") + "; sent " +
         std::to_string(m_line.Sent()) + " bytes, received " + std::to_string(m_line.Received()));
}

void TermSession::Reconnect(const std::string&) {
  m_editor.Rest(); // so that Ctrl+C interrupts
  const auto opened = m_line.Open();
  m_lost = !opened;
  m_problem = 0;
  Remark(opened ? "connected to " + m_line.Name() : opened.error().text + "; ~reconnect tries again");
}

} // namespace host
