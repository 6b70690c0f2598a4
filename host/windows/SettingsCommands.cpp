#include "host/windows/SettingsCommands.h"

#include "host/support/Files.h"
#include "host/windows/Boxes.h"
#include "host/windows/resource.h"

#include <shellapi.h>

namespace host {

void ShowSettingsCommands(HWND window, const SettingsFile& settings) {
  for (const UINT command : {IDM_OPEN_SETTINGS, IDM_FORGET})
    EnableMenuItem(GetMenu(window), command, settings.Path().empty() ? MF_GRAYED : MF_ENABLED);
}

void OpenSettingsFolder(HWND window, const SettingsFile& settings) {
  const std::string& path = settings.Path();
  if (path.empty())
    return;
  if (!IsAnythingAt(path))
    return ShowNote(window, "Settings", path + " is not there yet: nothing has been remembered.");
  const std::string folder = path.substr(0, path.find_last_of("\\/") + 1);
  // At most 32 is an error.
  const HINSTANCE opened =
      ShellExecuteA(window, "open", folder.empty() ? "." : folder.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
  if (reinterpret_cast<INT_PTR>(opened) <= 32)
    ShowError(window, folder + " cannot be shown.");
}

bool AskToForget(HWND window, Notes& notes) {
  const std::string path = notes.settings.Path();
  if (path.empty())
    return false;
  const std::string text = "Forget the places of the windows, the channels and the scripts, and delete " + path +
                           "?\n\nNothing is remembered until ondhost is started again.";
  if (ShowMessageBox(window, text, "Forget everything", MB_OKCANCEL | MB_ICONQUESTION) != IDOK)
    return false;
  if (!notes.settings.ForgetAll()) {
    notes.log.Add(LogTopic::kError, path + " cannot be deleted");
    ShowError(window, path + " cannot be deleted.");
    return false;
  }
  notes.log.Add(LogTopic::kProgram, path + " is deleted");
  return true;
}

} // namespace host
