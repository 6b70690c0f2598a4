// What the menu "File" offers for the settings.
#pragma once

#include "host/notes/Notes.h"

#include <windows.h>

namespace host {

// Lets the menu show whether there is a file of settings to work with.
void ShowSettingsCommands(HWND window, const SettingsFile& settings);
// Shows the file's folder in the system's own window for folders.
void OpenSettingsFolder(HWND window, const SettingsFile& settings);
// Asks whether all that is remembered shall be forgotten, and does it. False: nothing has changed.
bool AskToForget(HWND window, Notes& notes);

} // namespace host
