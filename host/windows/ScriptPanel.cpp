#include "host/windows/ScriptPanel.h"

#include "host/support/Files.h"
#include "host/support/Text.h"
#include "host/windows/Boxes.h"
#include "host/windows/resource.h"
#include "window/CFileDialog.h"

#include <shlwapi.h>

#include <utility>

namespace host {
namespace {

constexpr UINT kLongestInMenu = 60; // characters
constexpr const char* kExtension = ".dcs";

std::string FullPath(const std::string& path) {
  std::string full(GetFullPathNameA(path.c_str(), 0, nullptr, nullptr), '\0');
  full.resize(GetFullPathNameA(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  return full;
}

std::string NameOf(const std::string& path) {
  return path.substr(path.find_last_of("\\/") + 1);
}

bool HasExtension(const std::string& path) {
  const std::string_view extension = kExtension;
  return path.size() > extension.size() &&
         EqualIgnoringCase(std::string_view(path).substr(path.size() - extension.size()), extension);
}

std::string ChooseScript(HWND window, const std::string& last) {
  CFileDialog dialog;
  dialog.title = "Run a script file";
  dialog.initialName = last;
  dialog.filter = "Script files (*.dcs)|*.dcs|All files (*.*)|*.*||";
  dialog.defaultExtension = "*.dcs";
  return dialog.Open(window);
}

// "&1 C:\bench\sweep.dcs", cut in the middle when it is long.
std::string MenuText(std::size_t index, const std::string& path) {
  char compact[kLongestInMenu + 1] = "";
  PathCompactPathExA(compact, path.c_str(), sizeof compact, 0);
  std::string text = index < 9 ? "&" + std::to_string(index + 1) + " " : "1&0 ";
  for (const char* c = compact; *c != '\0'; ++c)
    text.append(*c == '&' ? 2 : 1, *c);
  return text;
}

// The submenu that has the item with the first script's number, or the one that stands for none.
HMENU RecentMenu(HWND window) {
  const HMENU file = GetSubMenu(GetMenu(window), 0);
  for (int i = 0; i < GetMenuItemCount(file); ++i) {
    if (const HMENU recent = GetSubMenu(file, i))
      return recent;
  }
  return nullptr;
}

} // namespace

void ScriptPanel::Attach(HWND window, UINT ended) {
  m_window = window;
  m_ended = ended;
  DragAcceptFiles(window, TRUE);
  ShowRecent();
  Refresh();
}

bool ScriptPanel::Run(const std::string& typed) {
  const std::string path = FullPath(typed);
  if (!m_runner.CanRun())
    return Refuse("Scripts cannot be run without the module.");
  if (m_runner.IsRunning())
    return Refuse(NameOf(m_runner.Path()) + " is still running. Stop it first, then run " + NameOf(path) + ".");
  if (!HasExtension(path))
    return Refuse(NameOf(path) + " is no script: its name does not end in " + kExtension + ".");
  if (!IsRegularFile(path)) {
    m_notes.settings.Change([&](Settings& settings) { Forget(settings.scripts, path); });
    ShowRecent();
    return Refuse(path + " is not there, or cannot be read.");
  }
  m_notes.settings.Change([&](Settings& settings) { Remember(settings.scripts, path); });
  ShowRecent();
  m_runner.Run(path);
  Refresh();
  return true;
}

bool ScriptPanel::RunDropped(HDROP drop) {
  const UINT count = DragQueryFileA(drop, 0xFFFFFFFF, nullptr, 0);
  std::string path(count == 0 ? 0 : DragQueryFileA(drop, 0, nullptr, 0), '\0');
  DragQueryFileA(drop, 0, path.data(), static_cast<UINT>(path.size() + 1));
  DragFinish(drop);
  if (count > 1)
    return Refuse("Only one script can be run at a time, and " + std::to_string(count) + " files were dropped.");
  return count == 1 && Run(path);
}

bool ScriptPanel::OnCommand(UINT command, bool& started) {
  if (command == IDM_RUN_SCRIPT) {
    const std::string path = ChooseScript(m_window, m_shown.empty() ? std::string() : m_shown.front());
    started = !path.empty() && Run(path);
  } else if (command == IDM_STOP_SCRIPT) {
    m_runner.Stop();
    Refresh();
  } else if (command >= IDM_FIRST_SCRIPT && command < IDM_FIRST_SCRIPT + OND_MOST_SCRIPTS) {
    started = RunRecent(command - IDM_FIRST_SCRIPT);
  } else {
    return false;
  }
  return true;
}

bool ScriptPanel::RunRecent(std::size_t index) {
  return index < m_shown.size() && Run(std::string(m_shown[index]));
}

void ScriptPanel::OnEnded() {
  m_runner.Finish();
  Refresh();
}

void ScriptPanel::Refresh() {
  m_runner.Refresh();
  const HMENU menu = GetMenu(m_window);
  const bool running = m_runner.IsRunning();
  EnableMenuItem(menu, IDM_RUN_SCRIPT, running ? MF_GRAYED : MF_ENABLED);
  EnableMenuItem(menu, IDM_STOP_SCRIPT, running ? MF_ENABLED : MF_GRAYED);
}

void ScriptPanel::ShowRecent() {
  m_shown = m_notes.settings.Get().scripts;
  const HMENU menu = RecentMenu(m_window);
  while (DeleteMenu(menu, 0, MF_BYPOSITION) != FALSE) {
  }
  for (std::size_t i = 0; i < m_shown.size() && i < OND_MOST_SCRIPTS; ++i)
    AppendMenuA(menu, MF_STRING, IDM_FIRST_SCRIPT + i, MenuText(i, m_shown[i]).c_str());
  if (m_shown.empty())
    AppendMenuA(menu, MF_STRING | MF_GRAYED, IDM_NO_SCRIPTS, "No scripts");
}

bool ScriptPanel::Refuse(const std::string& problem) {
  m_notes.log.Add(LogTopic::kError, problem);
  ShowError(m_window, problem);
  return false;
}

} // namespace host
