#include "tests/windows/TerminalWindow.h"

#include <doctest/doctest.h>

#include <utility>

namespace {

constexpr const char* kEndlessLine = "one line of a device that never stops\r\n";

} // namespace

void AnsweringChannel::Answer(std::initializer_list<std::string> portions) {
  const std::lock_guard guard(m_mutex);
  m_portions.insert(m_portions.end(), portions);
}

bool AnsweringChannel::AllTaken() const {
  const std::lock_guard guard(m_mutex);
  return m_portions.empty();
}

std::vector<std::string> AnsweringChannel::TakeSent() {
  const std::lock_guard guard(m_mutex);
  return std::exchange(m_sent, {});
}

const char* AnsweringChannel::GetInfoString(std::uint32_t what, std::int64_t code) {
  GuardedChannel::GetInfoString(what, code);
  m_errorText = "text of error " + std::to_string(code);
  return what == OND_INFO_ERROR ? m_errorText.c_str() : what == OND_INFO_DESCRIPTION ? "Bench 4" : "115200 8N1";
}

std::int32_t AnsweringChannel::Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) {
  GuardedChannel::Receive(buffer, bufferSize, received);
  duringReceive();
  const std::lock_guard guard(m_mutex);
  if (receiveCode != 0)
    return receiveCode;
  if (endless && m_portions.empty())
    m_portions.push_back(kEndlessLine);
  if (m_portions.empty())
    return 0;
  std::string& portion = m_portions.front();
  *received = portion.copy(buffer, bufferSize);
  portion.erase(0, *received);
  if (*received == 0 || endless) // what follows is the next poll's
    m_portions.pop_front();
  return 0;
}

std::int32_t AnsweringChannel::Transmit(const char* data, std::uint64_t length, std::uint64_t* written) {
  GuardedChannel::Transmit(data, length, written);
  const std::lock_guard guard(m_mutex);
  m_sent.emplace_back(data, length);
  return transmitCode;
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

void TerminalWindow::Focus(int id) const {
  window.Activate();
  window.Send(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(id).Handle()), TRUE); // as Tab does
}

bool TerminalWindow::HasFocus(int id) const {
  return host.Ask([] { return GetFocus(); }) == Control(id).Handle();
}

void TerminalWindow::Send(const std::string& line) const {
  Focus(IDC_TERMINAL_INPUT);
  Input().SetText(line);
  Control(IDC_TERMINAL_STATUS).SetText("");
  TypeKey(VK_RETURN);
  WaitFor("the status line to tell what became of \"" + line + "\"", [&] { return !Status().empty(); });
}

void TerminalWindow::SetAppendCr(bool append) const {
  const Window box = Control(IDC_TERMINAL_APPEND_CR);
  if ((box.Send(BM_GETCHECK) == BST_CHECKED) != append)
    box.Press();
  WaitFor("the box \"Append CR\"", [&] { return (box.Send(BM_GETCHECK) == BST_CHECKED) == append; });
}
