// A Terminal's window beside the device that it talks to.
#pragma once

#include "res/resource.h"
#include "tests/windows/support/BenchDevice.h"
#include "tests/windows/support/TestHost.h"

#include <initializer_list>

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

  // Puts the line into the input line, presses Enter and waits for a word in the status line.
  void Send(const std::string& line) const {
    Input().Focus();
    Input().SetText(line);
    Control(IDC_TERMINAL_STATUS).SetText("");
    TypeKey(VK_RETURN);
    WaitFor("the status line to tell what became of \"" + line + "\"", [&] { return !Status().empty(); });
  }
  TestHost host;
  BenchDevice channel;
  TestClient client{host, ONX_OBJ_TERMINAL};
  Window window;
};
