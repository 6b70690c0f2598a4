// A Terminal's window beside the device that it talks to.
#pragma once

#include "res/resource.h"
#include "tests/support/GuardedChannel.h"
#include "tests/windows/support/TestHost.h"

#include <initializer_list>

// A device that answers in portions: each portion is all that one poll finds.
class AnsweringChannel : public GuardedChannel {
public:
  AnsweringChannel() {
    duringReceive = [this](char* buffer, std::uint32_t size) { return Take(buffer, size); };
  }

  void Answer(std::initializer_list<std::string> portions) {
    const std::lock_guard guard(m_mutex);
    m_portions.insert(m_portions.end(), portions);
  }
  bool AllTaken() const {
    const std::lock_guard guard(m_mutex);
    return m_portions.empty();
  }

  // Set on the host's thread.
  bool endless = false;               // one line after the other, without a pause
  std::chrono::milliseconds delay{0}; // before each answer

private:
  std::uint64_t Take(char* buffer, std::uint32_t size) {
    std::this_thread::sleep_for(delay);
    const std::lock_guard guard(m_mutex);
    if (endless && m_portions.empty())
      m_portions.push_back("one line of a device that never stops\r\n");
    if (m_portions.empty())
      return 0;
    std::string& portion = m_portions.front();
    const std::size_t taken = portion.copy(buffer, size);
    portion.erase(0, taken);
    if (taken == 0 || endless) // what follows is the next poll's
      m_portions.pop_front();
    return taken;
  }

  mutable std::mutex m_mutex; // guards the field below
  std::deque<std::string> m_portions;
};

class TerminalWindow {
public:
  // Connected and shown.
  TerminalWindow() {
    client.Connect(&channel);
    window = client.Show("Terminal");
  }

  Window Control(int id) const { return window.Control(id); }
  Window Input() const { return Control(IDC_TERMINAL_INPUT); }
  std::string Status() const { return Control(IDC_TERMINAL_STATUS).Text(); }
  std::vector<std::string> Answers() const {
    return host.Ask([this] { return Control(IDC_TERMINAL_ANSWERS).Items(); });
  }
  std::size_t AnswerCount() const { return Control(IDC_TERMINAL_ANSWERS).ItemCount(); }
  // Lets the device answer, and waits until the window shows it.
  void Receive(std::initializer_list<std::string> portions) {
    channel.Answer(portions);
    WaitFor("the window to take all answers", [&] {
      Poll();
      return channel.AllTaken();
    });
  }
  // One poll, now.
  void Poll() const { window.Send(WM_TIMER, 1); }
  void Clear() const {
    window.PressControl(IDC_TERMINAL_CLEAR);
    WaitFor("the list to be empty", [&] { return AnswerCount() == 0; });
  }

  // Puts the line into the input line, presses Enter and waits for a word in the status line.
  void Send(const std::string& line) const {
    Input().Focus();
    Input().SetText(line);
    Control(IDC_TERMINAL_STATUS).SetText("");
    TypeKey(VK_RETURN);
    WaitFor("the status line to tell what became of \"" + line + "\"", [&] { return !Status().empty(); });
  }
  // What went to the device since the last call: "Transmit BYTES, Transmit BYTES…".
  std::string TakeSent() {
    const std::string sent = Joined(channel.Calls("Transmit "));
    channel.ForgetCalls();
    return sent;
  }
  void SetAppendCr(bool append) const {
    const Window box = Control(IDC_TERMINAL_APPEND_CR);
    if (box.Checked() != append)
      box.Press();
    WaitFor("the box \"Append CR\"", [&] { return box.Checked() == append; });
  }

  TestHost host;
  AnsweringChannel channel;
  TestClient client{host, ONX_OBJ_TERMINAL};
  Window window;
};
