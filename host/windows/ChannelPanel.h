// The upper part of the main window: which channel, and how it is doing.
#pragma once

#include "host/channel/ChannelSlot.h"
#include "host/channel/factory/ChannelFactory.h"
#include "host/notes/Notes.h"

#include <string>
#include <windows.h>

namespace host {

// Works the controls that the window's template has for it. Nothing happens before `Attach`. [user-interface thread]
class ChannelPanel {
public:
  // `options` are the command line's; its text is what the user finds typed in.
  // What tools do with a channel, and what becomes of it, goes to `notes`.
  ChannelPanel(ChannelSlot& slot, const ChannelOptions& options, Notes& notes)
      : m_slot(slot), m_options(options), m_notes(notes) {}
  ChannelPanel(const ChannelPanel&) = delete;
  ChannelPanel& operator=(const ChannelPanel&) = delete;

  void Attach(HWND window);

  bool IsConnected() const { return m_connected; }
  // Makes the channel whose text stands in the field and plugs it into the slot, where it may still be connecting for a
  // while. A channel that cannot be made is explained in a box, and the panel stays disconnected.
  void Connect();
  // Ends the channel. A box explains why not, while a tool uses it.
  void Disconnect();
  // Once for each channel that could not connect: ends it, unless a tool uses it, and returns why. Empty: nothing of
  // the kind has happened.
  std::string TakeFailure();

  // Shows the channel's texts and state as they are now, and notes when the state has changed.
  void Refresh();
  // Lets the field offer the channels that are remembered.
  void ShowHistory();

private:
  enum class State { kNone, kConnecting, kOpen, kClosed };

  State StateNow();
  void NoteState();
  bool Release();
  void ShowConnected();
  std::string ReasonForClosed() const;
  std::string StateText() const;

  ChannelSlot& m_slot;
  ChannelOptions m_options;
  Notes& m_notes;
  HWND m_window = nullptr;
  State m_noted = State::kNone;
  bool m_connected = false;  // a channel is plugged in
  bool m_connecting = false; // and has neither been seen open nor failed
};

} // namespace host
