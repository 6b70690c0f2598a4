#include "tests/windows/TerminalWindow.h"

void AnsweringChannel::Answer(std::initializer_list<std::string> portions) {
  const std::lock_guard guard(m_mutex);
  m_portions.insert(m_portions.end(), portions);
}

bool AnsweringChannel::AllTaken() const {
  const std::lock_guard guard(m_mutex);
  return m_portions.empty();
}

std::int32_t AnsweringChannel::Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) {
  const std::int32_t code = GuardedChannel::Receive(buffer, bufferSize, received);
  duringReceive();
  const std::lock_guard guard(m_mutex);
  if (endless && m_portions.empty())
    m_portions.push_back("one line of a device that never stops\r\n");
  if (code != 0 || m_portions.empty())
    return code;
  std::string& portion = m_portions.front();
  *received = portion.copy(buffer, bufferSize);
  portion.erase(0, *received);
  if (*received == 0 || endless) // what follows is the next poll's
    m_portions.pop_front();
  return 0;
}

TerminalWindow::TerminalWindow() {
  client.Connect(&channel);
  window = client.Show("Terminal");
}

void TerminalWindow::Receive(std::initializer_list<std::string> portions) {
  channel.Answer(portions);
  WaitFor("the window to take all answers", [&] {
    Poll();
    return channel.AllTaken();
  });
}

void TerminalWindow::Clear() const {
  window.PressControl(IDC_TERMINAL_CLEAR);
  WaitFor("the list to be empty", [&] { return AnswerCount() == 0; });
}

void TerminalWindow::Send(const std::string& line) const {
  Input().Focus();
  Input().SetText(line);
  Control(IDC_TERMINAL_STATUS).SetText("");
  TypeKey(VK_RETURN);
  WaitFor("the status line to tell what became of \"" + line + "\"", [&] { return !Status().empty(); });
}

std::string TerminalWindow::TakeSent() {
  const std::string sent = Joined(channel.Calls("Transmit "));
  channel.ForgetCalls();
  return sent;
}

void TerminalWindow::SetAppendCr(bool append) const {
  const Window box = Control(IDC_TERMINAL_APPEND_CR);
  if (box.Checked() != append)
    box.Press();
  WaitFor("the box \"Append CR\"", [&] { return box.Checked() == append; });
}
