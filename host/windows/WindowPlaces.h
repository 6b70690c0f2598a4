// Where the host's windows come up on the screen, so that they do not cover each other.
#pragma once

#include "host/notes/Settings.h"

#include <string>
#include <vector>
#include <windows.h>

namespace host {

// Puts the main window near the screen's upper left corner, which leaves room for the tools' windows.
void PlaceMainWindow(HWND window);

// The windows that `owner` owns, in no particular order. Objects of the module do not name their windows; a window that
// is among these after an object was asked to show its own, and was not before, is the object's.
std::vector<HWND> OwnedWindows(HWND owner);

// Puts a window that the main window owns to its right, or below it where there is no room, or else into the screen's
// upper right corner; each time some steps further down and aside where another one's title would be covered.
void PlaceBeside(HWND mainWindow, HWND window);

// Puts a window where the one of that name was, when it was remembered and its title can be seen there on a screen of
// now. False: it cannot, and nothing has changed.
bool PutBack(const Settings& settings, const std::string& name, HWND window);
// Remembers where a window is, or was before it was minimised; nothing for no window.
void RememberPlace(Settings& settings, const std::string& name, HWND window);

} // namespace host
