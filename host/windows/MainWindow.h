// The host's main window: the channel above, the module's tools below, a menu for both.
#pragma once

#include "host/windows/ChannelPanel.h"
#include "host/windows/StretchLayout.h"
#include "host/windows/ToolPanel.h"
#include "host/windows/TraceWindow.h"

namespace host {

// Everything happens on the thread that makes it, the user-interface thread.
class MainWindow {
public:
  // What goes over the channel goes to the sinks of `records` too; they stay as long as this object.
  MainWindow(const ChannelOptions& options, TraceFork& records) : m_channel(m_slot, options, records), m_trace(m_log) {
    records.Add(m_log);
  }
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

  HWND Handle() const { return m_window; }
  // True when the message was a key that the window understands, and has been handled.
  bool TakeKey(MSG& message) const;

private:
  static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  // True: handled, with `m_answer` as the answer.
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  void OnInit();
  bool OnCommand(UINT command, UINT notification);
  void OnEnter();
  void LimitSize(MINMAXINFO& limits) const;
  void DisconnectChannel();
  void ConnectTools();
  void Refresh();
  // Ends the tools and what they are doing, then the channel, then the window. Safe at any time, and again.
  void Close();

  HWND m_window = nullptr;
  LRESULT m_answer = 0;
  HACCEL m_accelerators = nullptr;
  SIZE m_smallest{};
  StretchLayout m_layout;
  TraceLog m_log;
  ChannelSlot m_slot;
  ChannelPanel m_channel;
  TraceWindow m_trace;
  ToolPanel m_tools; // behind the slot: ends before what its objects are connected to
};

} // namespace host
