// The scripts of the menu "File": chosen, used before, dropped on the window, or named on the command line.
#pragma once

#include "host/windows/ScriptRunner.h"

#include <shellapi.h>

namespace host {

// [user-interface thread]
class ScriptPanel {
public:
  // Both outlive this.
  ScriptPanel(Channel& channel, Notes& notes) : m_notes(notes), m_runner(channel, notes) {}
  ScriptPanel(const ScriptPanel&) = delete;
  ScriptPanel& operator=(const ScriptPanel&) = delete;

  // Takes the menu into use. `window` is posted `ended` when a script is over.
  void Attach(HWND window, UINT ended);
  // From now on scripts can be run.
  void UseModule(const Module& module) { m_runner.Attach(module, m_window, m_ended); }
  void Connect(bool connected) { m_runner.Connect(connected); }

  // Runs a script. False, after a box that tells why, when it cannot be.
  bool Run(const std::string& typed);
  // The same for what was dropped; `drop` is given back.
  bool RunDropped(HDROP drop);
  // False: `command` is none of a script's. `started` becomes true when a script runs now that did not.
  bool OnCommand(UINT command, bool& started);
  // To be called for `ended`.
  void OnEnded();
  // Lets the menu show what can be done.
  void Refresh();
  // Lets the menu show the scripts that are remembered.
  void ShowRecent();
  // Ends the script that runs. Safe at any time, and again.
  void End() { m_runner.End(); }

private:
  bool RunRecent(std::size_t index);
  bool Refuse(const std::string& problem);

  Notes& m_notes;
  ScriptRunner m_runner;
  HWND m_window = nullptr;
  UINT m_ended = 0;
  Recent m_shown; // in the menu
};

} // namespace host
