// The lower part of the main window, and its "Tools" menu: the module's device clients and their windows.
#pragma once

#include "host/console/Module.h"
#include "host/notes/Notes.h"

#include <string>
#include <vector>
#include <windows.h>

namespace host {

// Makes one object of each kind that the module has, with a button and a menu item that show and hide its window, and
// show which it is. [user-interface thread]
class ToolPanel {
public:
  // Both outlive this.
  ToolPanel(Channel& channel, Notes& notes) : m_channel(channel), m_notes(notes) {}
  ToolPanel(const ToolPanel&) = delete;
  ToolPanel& operator=(const ToolPanel&) = delete;

  // The objects will tell `window` of their windows' events by `eventMessage`.
  void Attach(HWND window, const Module& module, UINT eventMessage);
  // Says in the buttons' place why there are none.
  void AttachProblem(HWND window, const std::string& problem);

  // Connects all objects to the channel, or disconnects them.
  void Connect(bool connected);
  // Shows the window of a tool or hides it; one that waits for an answer comes to the front. False: `command` is none
  // of a tool's.
  bool OnCommand(UINT command);
  // Lets buttons and menu items show which windows are open.
  void Refresh();
  // Fits the buttons into the group box, side by side.
  void Layout();
  // Notes where the tools' windows are.
  void RememberPlaces(Settings& settings) const;
  // Ends all objects, their windows with them, and what these are doing. Safe at any time, and again.
  void End();

private:
  struct Tool {
    std::string name;
    std::unique_ptr<ClientPort> port; // its way to the channel
    Module::Object object;
    HWND button;
    UINT command;
    HWND window; // null until it was shown
  };
  void Add(const Module::Kind& kind, Module::Object object);
  void Toggle(Tool& tool);
  // A window that comes up for the first time goes where it was when the host ended last, or else gets a place where it
  // covers nothing.
  EONX_ERR_ERRCODE_ Show(Tool& tool);

  Channel& m_channel;
  Notes& m_notes;
  HWND m_window = nullptr;
  std::vector<Tool> m_tools;
  std::string m_mnemonics; // letters in use, lower case
};

} // namespace host
