// The Script Processor's window on a channel, with a folder for its scripts.
#pragma once

#include "res/resource.h"
#include "tests/support/GuardedChannel.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/support/TestHost.h"

#include <doctest/doctest.h>

#include <atomic>

inline constexpr const char* kScriptCaption = "Script processor";

class ScriptChannel : public GuardedChannel {
public:
  const char* GetInfoString(std::uint32_t what, std::int64_t code) override {
    GuardedChannel::GetInfoString(what, code);
    return what == OND_INFO_ERROR && code == EONX_ERR_SCRIPT ? "the script failed" : "channel";
  }
  // Only runs wait for the channel.
  std::int32_t Lock(void* owner, std::uint32_t timeoutMs) override {
    const std::int32_t answer = GuardedChannel::Lock(owner, timeoutMs);
    runs += timeoutMs != 0 && answer == 0;
    return answer;
  }
  std::int32_t Transmit(const char* data, std::uint64_t length, std::uint64_t* written) override {
    GuardedChannel::Transmit(data, length, written);
    ++transmits;
    return 0;
  }

  std::atomic<int> runs = 0, transmits = 0;
};

using Lines = std::vector<std::string>;

// In one text, for messages that can be read.
inline std::string Shown(const Lines& lines) {
  std::string shown;
  for (const std::string& line : lines)
    shown += "[" + line + "]";
  return shown;
}

// A host whose Script Processor is shown on a channel, and a folder for its scripts.
struct ScriptBench {
  TestHost host;
  TemporaryFolder folder;
  ScriptChannel channel;
  TestClient client{host, ONX_OBJ_SCRIPT_PROCESSOR};
  Window window = client.Show(kScriptCaption);
  Window log = window.Control(IDC_SCRIPT_LOG);
  Window execute = window.Control(IDC_SCRIPT_EXECUTE);

  ScriptBench() { client.Connect(&channel); }

  // After the window was destroyed.
  void ShowAgain() {
    window = client.Show(kScriptCaption);
    log = window.Control(IDC_SCRIPT_LOG);
    execute = window.Control(IDC_SCRIPT_EXECUTE);
  }

  // Chooses a script by the "..." button as a user does: the system's dialog, a typed name.
  void Choose(const std::string& path) const {
    window.PressControl(IDC_SCRIPT_BROWSE);
    const Window chooser = Window::WaitForTop("Open a script file");
    chooser.TypeFileName(path);
    chooser.WaitUntilGone("the file dialog");
    WaitFor("the window to show the path", [&] { return window.Control(IDC_SCRIPT_PATH).Text() == path; });
  }
  void Start(const std::string& script) const {
    folder.Write("test.dcs", script);
    if (window.Control(IDC_SCRIPT_PATH).Text() != folder.PathOf("test.dcs"))
      Choose(folder.PathOf("test.dcs"));
    execute.Press();
  }
  void WaitForEnd() const {
    WaitFor("the script to end", [&] { return channel.LockDepth() == 0 && execute.Text() == "Execute script"; });
  }
  // Runs a script that succeeds; the log afterwards.
  std::vector<std::string> Run(const std::string& script) const {
    const int locks = channel.runs;
    Start(script);
    WaitFor("the run to begin", [&] { return channel.runs > locks; });
    host.Settle(); // the press has been handled, so the button says "Stop script" until the end
    WaitFor("the script to end", [&] {
      if (Window::FindTop("Error").Exists())
        FAIL("the script failed: " << Shown(log.Items()));
      return execute.Text() == "Execute script";
    });
    return log.Items();
  }
  void WaitForLine(const std::string& line) const {
    WaitFor("the log line \"" + line + "\"", [&] {
      const auto items = log.Items();
      return !items.empty() && items.back() == line;
    });
  }
};
