// A Terminal's window beside the device that it talks to.
#pragma once

#include "res/resource.h"
#include "tests/support/GuardedChannel.h"
#include "tests/windows/support/TestHost.h"

#include <functional>
#include <initializer_list>

// A device that answers in portions: each portion is all that one poll finds.
class AnsweringChannel : public GuardedChannel {
public:
  void Answer(std::initializer_list<std::string> portions);
  bool AllTaken() const;

  std::int32_t Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) override;

  // Set on the host's thread.
  bool endless = false; // one line after the other, without a pause
  std::function<void()> duringReceive = [] {};

private:
  mutable std::mutex m_mutex; // guards the field below
  std::deque<std::string> m_portions;
};

class TerminalWindow {
public:
  // Connected and shown.
  TerminalWindow();

  Window Control(int id) const { return window.Control(id); }
  Window Input() const { return Control(IDC_TERMINAL_INPUT); }
  std::string Status() const { return Control(IDC_TERMINAL_STATUS).Text(); }
  std::vector<std::string> Answers() const { return Control(IDC_TERMINAL_ANSWERS).Items(); }
  std::size_t AnswerCount() const { return Control(IDC_TERMINAL_ANSWERS).ItemCount(); }
  // Lets the device answer, and waits until the window shows it.
  void Receive(std::initializer_list<std::string> portions);
  // One poll, now.
  void Poll() const { window.Send(WM_TIMER, 1); }
  void Clear() const;

  // Puts the line into the input line, presses Enter and waits for a word in the status line.
  void Send(const std::string& line) const;
  // What went to the device since the last call: "Transmit BYTES, Transmit BYTES…".
  std::string TakeSent();
  void SetAppendCr(bool append) const;

  TestHost host;
  AnsweringChannel channel;
  TestClient client{host, ONX_OBJ_TERMINAL};
  Window window;
};
