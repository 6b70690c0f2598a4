// A Terminal's window beside the device that it talks to.
#pragma once

#include "res/resource.h"
#include "tests/support/GuardedChannel.h"
#include "tests/windows/support/TestHost.h"

#include <deque>
#include <functional>
#include <initializer_list>

// A device that answers in portions: each portion is all that one poll finds.
class AnsweringChannel : public GuardedChannel {
public:
  void Answer(std::initializer_list<std::string> portions);
  bool AllTaken() const;
  // The bytes of each Transmit since the last call.
  std::vector<std::string> TakeSent();

  const char* GetInfoString(std::uint32_t what, std::int64_t code) override;
  std::int32_t Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) override;
  std::int32_t Transmit(const char* data, std::uint64_t length, std::uint64_t* written) override;

  // Set before the channel is used, or on the host's thread.
  std::int32_t transmitCode = 0;
  std::int32_t receiveCode = 0;
  bool endless = false; // one line after the other, without a pause
  std::function<void()> duringReceive = [] {};

private:
  mutable std::mutex m_mutex; // guards the fields below
  std::deque<std::string> m_portions;
  std::vector<std::string> m_sent;
  std::string m_errorText;
};

class TerminalWindow {
public:
  // Connected and shown.
  TerminalWindow();

  Window Control(int id) const { return window.Control(id); }
  Window Input() const { return Control(IDC_TERMINAL_INPUT); }
  std::string Status() const { return Control(IDC_TERMINAL_STATUS).Text(); }
  std::vector<std::string> Answers() const { return Control(IDC_TERMINAL_ANSWERS).Items(); }
  bool NoAnswers() const { return Control(IDC_TERMINAL_ANSWERS).Send(LB_GETCOUNT) == 0; }
  // Lets the device answer, and waits until the window shows it.
  void Receive(std::initializer_list<std::string> portions);
  // One poll, now.
  void Poll() const { window.Send(WM_TIMER, 1); }

  void Focus(int id) const;
  bool HasFocus(int id) const;
  // Puts the line into the input line, presses Enter and waits for a word in the status line.
  void Send(const std::string& line) const;
  void SetAppendCr(bool append) const;

  TestHost host;
  AnsweringChannel channel;
  TestClient client{host, ONX_OBJ_TERMINAL};
  Window window;
};
