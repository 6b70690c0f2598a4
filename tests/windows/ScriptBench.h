// The Script Processor's window on a channel, with a folder for its scripts.
#pragma once

#include "res/resource.h"
#include "tests/support/GuardedChannel.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/support/TestHost.h"

#include <doctest/doctest.h>

inline constexpr const char* kScriptCaption = "Script processor";

using Lines = std::vector<std::string>;

// A host whose Script Processor is shown on a channel, and a folder for its scripts.
struct ScriptBench {
  TestHost host;
  TemporaryFolder folder;
  GuardedChannel channel;
  TestClient client{host, ONX_OBJ_SCRIPT_PROCESSOR};
  Window window, log, execute;

  ScriptBench() {
    client.Connect(&channel);
    Show();
  }

  // Also after the window was destroyed.
  void Show() {
    window = client.Show(kScriptCaption);
    log = window.Control(IDC_SCRIPT_LOG);
    execute = window.Control(IDC_SCRIPT_EXECUTE);
  }

  Lines Logged() const {
    return host.Ask([this] { return log.Items(); });
  }

  // Writes a script and chooses it by the "..." button as a user does.
  void Choose(const std::string& script) const {
    const std::string path = folder.PathOf("test.dcs");
    folder.Write("test.dcs", script);
    if (window.Control(IDC_SCRIPT_PATH).Text() == path)
      return;
    window.PressControl(IDC_SCRIPT_BROWSE);
    Window::ChooseFile("Open a script file", path);
    WaitFor("the window to show the path", [&] { return window.Control(IDC_SCRIPT_PATH).Text() == path; });
  }
  void Start(const std::string& script) const {
    Choose(script);
    execute.Press();
  }
  void WaitForEnd() const {
    WaitFor("the script to end", [&] { return channel.LockDepth() == 0 && execute.Text() == "Execute script"; });
  }
  // Runs a script that succeeds; the log afterwards.
  Lines Run(const std::string& script) {
    channel.ForgetCalls();
    Start(script);
    WaitFor("the run to begin", [&] { return !channel.Calls("Lock").empty(); });
    host.Settle(); // the press has been handled, so the button says "Stop script" until the end
    WaitFor("the script to end", [&] {
      if (Window::FindTop("Error").Exists())
        FAIL("the script failed: " << Joined(Logged()));
      return execute.Text() == "Execute script";
    });
    return Logged();
  }
  void WaitForLine(const std::string& line) const {
    WaitFor("the log line \"" + line + "\"", [&] {
      const Lines items = Logged();
      return !items.empty() && items.back() == line;
    });
  }
};
