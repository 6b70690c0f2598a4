#include "host/windows/ToolPanel.h"

#include "host/commandline/ExitCodes.h"
#include "host/support/Text.h"
#include "host/windows/Boxes.h"
#include "host/windows/WindowPlaces.h"
#include "host/windows/resource.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

// Letters that the menu bar and the channel's controls use, "Disconnect" included.
constexpr const char* kTakenMnemonics = "ipohacdr";
// In dialog units: the group box's inner edges, and the space between buttons.
constexpr RECT kGroupMargins = {7, 13, 7, 8};
constexpr int kGap = 4;
constexpr const char* kMenuTitle = "T&ools";

// The name with an "&" in front of its first letter that is still free.
std::string WithMnemonic(const std::string& name, std::string& taken) {
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char letter = ToLowerAscii(name[i]);
    if (letter >= 'a' && letter <= 'z' && taken.find(letter) == std::string::npos) {
      taken += letter;
      return name.substr(0, i) + "&" + name.substr(i);
    }
  }
  return name;
}

HMENU ToolsMenu(HWND window) {
  const HMENU bar = GetMenu(window);
  for (int i = 0; i < GetMenuItemCount(bar); ++i) {
    char title[16] = "";
    GetMenuStringA(bar, static_cast<UINT>(i), title, sizeof title, MF_BYPOSITION);
    if (std::string(title) == kMenuTitle)
      return GetSubMenu(bar, i);
  }
  return nullptr;
}

} // namespace

void ToolPanel::Attach(HWND window, const Module& module, UINT eventMessage) {
  m_window = window;
  m_mnemonics = kTakenMnemonics;
  _TONX_DLGEVENTDATA route{};
  route.hWnd = window;
  route.uMsg = eventMessage;
  for (const Module::Kind& kind : module.Kinds()) {
    Module::Object object = m_tools.size() < OND_MOST_TOOLS ? module.Create(kind.type) : Module::Object();
    if (!object)
      continue;
    object->SetDlgEventData(&route);
    Add(kind, std::move(object));
  }
  DeleteMenu(ToolsMenu(window), IDM_NO_TOOLS, MF_BYCOMMAND);
  Layout();
}

void ToolPanel::Add(const Module::Kind& kind, Module::Object object) {
  const UINT command = IDM_FIRST_TOOL + static_cast<UINT>(m_tools.size());
  const std::string title = WithMnemonic(kind.name, m_mnemonics);
  // A check box in the shape of a button: pressed in as long as the window is open.
  const HWND button = CreateWindowA(
      "BUTTON", title.c_str(), WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_CHECKBOX | BS_PUSHLIKE, 0, 0, 0, 0, m_window,
      reinterpret_cast<HMENU>(static_cast<UINT_PTR>(command)), GetModuleHandleA(nullptr), nullptr);
  SendMessageA(button, WM_SETFONT, static_cast<WPARAM>(SendMessageA(m_window, WM_GETFONT, 0, 0)), FALSE);
  const std::string item = title + "\tCtrl+" + std::to_string(m_tools.size() + 1);
  AppendMenuA(ToolsMenu(m_window), MF_STRING, command, item.c_str());
  auto port = std::make_unique<ClientPort>(kind.name, m_channel, m_notes.use);
  m_tools.push_back({kind.name, std::move(port), std::move(object), button, command, nullptr});
}

void ToolPanel::AttachProblem(HWND window, const std::string& problem) {
  SetDlgItemTextA(window, IDC_TOOLS_PROBLEM, problem.c_str());
  ShowWindow(GetDlgItem(window, IDC_TOOLS_PROBLEM), SW_SHOW);
}

void ToolPanel::Connect(bool connected) {
  for (const Tool& tool : m_tools)
    tool.object->Connect(connected ? tool.port.get() : nullptr);
}

void ToolPanel::RememberPlaces(Settings& settings) const {
  for (const Tool& tool : m_tools)
    RememberPlace(settings, tool.name, tool.window);
}

bool ToolPanel::OnCommand(UINT command) {
  for (Tool& tool : m_tools) {
    if (tool.command == command) {
      Toggle(tool);
      return true;
    }
  }
  return false;
}

// A window that waits for an answer, or for a copy, is brought to the front instead of being hidden.
void ToolPanel::Toggle(Tool& tool) {
  const std::string name = tool.name; // a box lets the user close everything, this tool included
  const bool open = tool.object->IsNonModalDialogOpen() != 0;
  if (open && IsWindow(tool.window) && !IsWindowEnabled(tool.window)) {
    SetForegroundWindow(GetLastActivePopup(tool.window));
    Refresh();
    return;
  }
  const EONX_ERR_ERRCODE_ result = open ? tool.object->CloseDialogNonModal() : Show(tool);
  Refresh();
  if (result == EONX_ERR_NONE)
    return;
  m_notes.log.Add(LogTopic::kError, name + ": " + ResultText(result));
  ShowError(m_window, name + ": " + ResultText(result) + ".");
}

EONX_ERR_ERRCODE_ ToolPanel::Show(Tool& tool) {
  const std::vector<HWND> before = OwnedWindows(m_window);
  const EONX_ERR_ERRCODE_ result = tool.object->ShowDialogNonModal(m_window);
  for (const HWND window : OwnedWindows(m_window)) {
    if (IsWindowVisible(window) && std::find(before.begin(), before.end(), window) == before.end()) {
      tool.window = window;
      if (!PutBack(m_notes.settings.Get(), tool.name, window))
        PlaceBeside(m_window, window);
    }
  }
  return result;
}

void ToolPanel::Refresh() {
  for (const Tool& tool : m_tools) {
    const bool open = tool.object->IsNonModalDialogOpen() != 0;
    const UINT check = open ? BST_CHECKED : BST_UNCHECKED;
    if (IsDlgButtonChecked(m_window, static_cast<int>(tool.command)) != check)
      CheckDlgButton(m_window, static_cast<int>(tool.command), check);
    CheckMenuItem(GetMenu(m_window), tool.command, open ? MF_CHECKED : MF_UNCHECKED);
  }
}

void ToolPanel::Layout() {
  if (m_tools.empty())
    return;
  RECT place{};
  GetWindowRect(GetDlgItem(m_window, IDC_TOOLS_GROUP), &place);
  MapWindowPoints(nullptr, m_window, reinterpret_cast<POINT*>(&place), 2);
  RECT margins = kGroupMargins;
  MapDialogRect(m_window, &margins);
  RECT gap{0, 0, kGap, 0};
  MapDialogRect(m_window, &gap);
  const int count = static_cast<int>(m_tools.size());
  const int left = place.left + margins.left;
  const int stride = (place.right - margins.right - left + gap.right) / count;
  for (int i = 0; i < count; ++i)
    MoveWindow(m_tools[static_cast<std::size_t>(i)].button, left + i * stride, place.top + margins.top,
               stride - gap.right, place.bottom - margins.bottom - place.top - margins.top, TRUE);
}

void ToolPanel::End() {
  // While an object ends, its work may still send messages that arrive here.
  std::exchange(m_tools, {}).clear();
}

} // namespace host
