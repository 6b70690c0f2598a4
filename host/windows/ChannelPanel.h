// The upper part of the main window: which channel, and how it is doing.
#pragma once

#include "host/channel/ChannelFactory.h"
#include "host/channel/ChannelSlot.h"

#include <string>
#include <windows.h>

namespace host {

// Works the controls that the window's template has for it. Nothing happens before `Attach`. [user-interface thread]
class ChannelPanel {
public:
  // `options` are the command line's; its text is what the user finds typed in.
  ChannelPanel(ChannelSlot& slot, const ChannelOptions& options) : m_slot(slot), m_options(options) {}
  ChannelPanel(const ChannelPanel&) = delete;
  ChannelPanel& operator=(const ChannelPanel&) = delete;

  void Attach(HWND window);

  bool IsConnected() const { return m_connected; }
  // Makes the channel whose text stands in the field and plugs it into the slot. A channel that cannot be made is
  // explained in a box, and the panel stays disconnected.
  void Connect();
  // Ends the channel. A box explains why not, while a tool uses it.
  void Disconnect();

  // Shows the channel's texts and state as they are now.
  void Refresh();

private:
  void ShowConnected();
  std::string StateText() const;
  void SetText(int control, const std::string& text);

  ChannelSlot& m_slot;
  ChannelOptions m_options;
  HWND m_window = nullptr;
  bool m_connected = false;
};

} // namespace host
