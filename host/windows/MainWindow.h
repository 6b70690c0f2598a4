// The host's main window: the channel above, the module's tools below, a menu for both.
#pragma once

#include "host/windows/ChannelPanel.h"
#include "host/windows/LogRows.h"
#include "host/windows/RowsWindow.h"
#include "host/windows/ScriptPanel.h"
#include "host/windows/StretchLayout.h"
#include "host/windows/ToolPanel.h"
#include "host/windows/TraceRows.h"
#include "host/windows/UsePanel.h"

namespace host {

// Everything happens on the thread that makes it, the user-interface thread.
class MainWindow {
public:
  // The notes outlive this.
  MainWindow(const ChannelOptions& options, Notes& notes)
      : m_notes(notes), m_channel(m_slot, options, notes), m_use(notes), m_traceRows(notes.trace),
        m_trace("Trace", m_traceRows), m_logRows(notes.log), m_log("Log", m_logRows), m_scripts(m_slot, notes),
        m_tools(m_slot, notes) {}
  ~MainWindow();
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;

  // Makes the window and shows it. False: the system makes no windows here.
  bool Create();
  // Makes the tools; the module must stay until this object's end. Without a module the window tells why.
  void UseModule(const Module& module);
  void DoWithoutModule(const std::string& problem);
  // Opens the channel that the window shows: at first the one that the command line asked for.
  void ConnectChannel();
  // Runs a script as soon as the channel is open, or cannot be opened.
  void RunWhenOpen(const std::string& script) { m_firstScript = script; }

  HWND Handle() const { return m_window; }
  // True when the message was a key that the window understands, and has been handled.
  bool TakeKey(MSG& message);

private:
  static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  // True: handled, with `m_answer` as the answer.
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  void OnInit();
  bool OnCommand(UINT command, UINT notification);
  bool OnOtherCommand(UINT command);
  void OnEnter();
  void LimitSize(MINMAXINFO& limits) const;
  void DisconnectChannel();
  void ConnectTools();
  void Refresh();
  void RunFirstScript();
  void ShowRows(RowsWindow& window);
  void ToggleRows(RowsWindow& window);
  void ForgetEverything();
  void RememberPlaces();
  // Ends the tools and what they are doing, then the channel, then the window. Safe at any time, and again.
  void Close();

  HWND m_window = nullptr;
  LRESULT m_answer = 0;
  HACCEL m_accelerators = nullptr;
  SIZE m_smallest{};
  StretchLayout m_layout;
  std::string m_firstScript; // that is still to be run
  Notes& m_notes;
  ChannelSlot m_slot;
  ChannelPanel m_channel;
  UsePanel m_use;
  TraceRows m_traceRows;
  RowsWindow m_trace;
  LogRows m_logRows;
  RowsWindow m_log;
  ScriptPanel m_scripts; // these two behind the slot: they end before what their objects are connected to
  ToolPanel m_tools;
};

} // namespace host
