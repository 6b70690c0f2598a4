// Where the host's windows come up on the screen, so that they do not cover each other.
#pragma once

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

} // namespace host
