// Where the host's windows come up on the screen, so that they do not cover each other.
#pragma once

#include <cstddef>
#include <vector>
#include <windows.h>

namespace host {

// Puts the main window near the screen's upper left corner, which leaves room for the tools' windows.
void PlaceMainWindow(HWND window);

// The windows that `owner` owns, in no particular order. Objects of the module do not name their windows; a window that
// is among these after an object was asked to show its own, and was not before, is the object's.
std::vector<HWND> OwnedWindows(HWND owner);

// Puts a window to the right of the main window, or below it where there is no room; the `index`-th some steps further
// down and to the right. Where neither has room it covers a part of the main window, but stays within the screen.
void PlaceBeside(HWND mainWindow, HWND window, std::size_t index);

} // namespace host
