// The part of the main window that tells who uses the channel, and how much goes over it.
#pragma once

#include "host/notes/Notes.h"

#include <windows.h>

namespace host {

// Works the controls that the window's template has for it. [user-interface thread]
class UsePanel {
public:
  explicit UsePanel(Notes& notes) : m_notes(notes) {}
  UsePanel(const UsePanel&) = delete;
  UsePanel& operator=(const UsePanel&) = delete;

  void Attach(HWND window) { m_window = window; }
  // Shows what is now, and writes into the log who has taken the channel for longer and given it back. To be called a
  // few times a second.
  void Refresh();
  void ResetCounters();

private:
  void NoteUse(const std::optional<ChannelUse::Hold>& holder);

  Notes& m_notes;
  HWND m_window = nullptr;
  std::optional<ChannelUse::Hold> m_noted; // in the log, and not given back yet
};

} // namespace host
