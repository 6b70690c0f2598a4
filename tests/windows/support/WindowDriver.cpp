#include "tests/windows/support/WindowDriver.h"

#include <doctest/doctest.h>
#include <shlobj.h>

#include <chrono>
#include <cstring>

namespace {

constexpr UINT kAnswerLimitMs = 20000;

struct Search {
  const std::string& caption;
  DWORD process;
  HWND found = nullptr;
};

BOOL CALLBACK MatchTop(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != search.process || !IsWindowVisible(window) || Window(window).Text() != search.caption)
    return TRUE;
  search.found = window;
  return FALSE;
}

// Of the thread that the window belongs to.
GUITHREADINFO ThreadState(HWND window) {
  GUITHREADINFO state{};
  state.cbSize = sizeof(state);
  GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &state);
  return state;
}

void SendKey(WORD virtualKey, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = virtualKey;
  input.ki.wScan = static_cast<WORD>(MapVirtualKeyA(virtualKey, MAPVK_VK_TO_VSC));
  input.ki.dwFlags = flags;
  SendInput(1, &input, sizeof(input));
}

} // namespace

void WaitFor(const std::string& what, const std::function<bool()>& condition, int limitMs) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(limitMs);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end)
      FAIL("waited " << limitMs << " ms for " << what);
    Sleep(2);
  }
}

Window Window::FindTop(const std::string& caption, DWORD process) {
  Search search{caption, process};
  EnumWindows(MatchTop, reinterpret_cast<LPARAM>(&search));
  return Window(search.found);
}

Window Window::WaitForTop(const std::string& caption, DWORD process) {
  Window window;
  WaitFor("the window \"" + caption + "\"", [&] {
    window = FindTop(caption, process);
    return window.Exists();
  });
  return window;
}

LRESULT Window::Send(UINT message, WPARAM wParam, LPARAM lParam) const {
  DWORD_PTR answer = 0;
  if (!SendMessageTimeoutA(m_handle, message, wParam, lParam, SMTO_NORMAL, kAnswerLimitMs, &answer) && Exists())
    FAIL("the window did not answer message " << message << " within " << kAnswerLimitMs << " ms");
  return static_cast<LRESULT>(answer);
}

std::string Window::Text() const {
  std::string text(static_cast<std::size_t>(Send(WM_GETTEXTLENGTH)), '\0');
  text.resize(static_cast<std::size_t>(Send(WM_GETTEXT, text.size() + 1, reinterpret_cast<LPARAM>(text.data()))));
  return text;
}

RECT Window::Place() const {
  RECT place{};
  GetWindowRect(m_handle, &place);
  return place;
}

RECT Window::PlaceInside() const {
  RECT place = Place();
  MapWindowPoints(nullptr, GetParent(m_handle), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

SIZE Window::ClientSize() const {
  RECT client{};
  GetClientRect(m_handle, &client);
  return {client.right, client.bottom};
}

bool Window::IsWhole() const {
  RECT area{}, seen{};
  const bool isControl = (GetWindowLongA(m_handle, GWL_STYLE) & WS_CHILD) != 0;
  if (isControl)
    GetClientRect(GetParent(m_handle), &area);
  else
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
  const RECT place = isControl ? PlaceInside() : Place();
  return IntersectRect(&seen, &place, &area) && EqualRect(&seen, &place);
}

Window Window::Control(int id) const {
  const HWND control = GetDlgItem(m_handle, id);
  if (!control)
    FAIL("\"" << Text() << "\" has no control " << id);
  return Window(control);
}

void Window::Press() const {
  const std::string text = Text();
  if (!Visible() || !Enabled())
    FAIL("the button \"" << text << "\" cannot be pressed");
  PostMessageA(m_handle, BM_CLICK, 0, 0);
}

void Window::Activate() const {
  WaitFor("\"" + Text() + "\" to come to the front", [&] {
    SetForegroundWindow(m_handle);
    return GetForegroundWindow() == m_handle && ThreadState(m_handle).hwndActive == m_handle;
  });
}

void Window::Focus() const {
  const Window top(GetAncestor(m_handle, GA_ROOT));
  top.Activate();
  top.Send(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(m_handle), TRUE);
  WaitForFocus();
}

void Window::WaitForFocus() const {
  WaitFor("the focus on \"" + Text() + "\" (control " + std::to_string(GetDlgCtrlID(m_handle)) + ")", [this] {
    const HWND focus = ThreadState(m_handle).hwndFocus;
    return focus == m_handle || IsChild(m_handle, focus);
  });
}

std::vector<std::string> Window::Items() const {
  std::vector<std::string> items(ItemCount());
  for (std::size_t i = 0; i < items.size(); ++i) {
    items[i].resize(static_cast<std::size_t>(Send(LB_GETTEXTLEN, i)));
    Send(LB_GETTEXT, i, reinterpret_cast<LPARAM>(items[i].data()));
  }
  return items;
}

void Window::DropFiles(const std::vector<std::string>& paths) const {
  std::string names;
  for (const std::string& path : paths)
    names += path + '\0';
  names += '\0';
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DROPFILES) + names.size());
  auto* const drop = static_cast<DROPFILES*>(GlobalLock(memory));
  drop->pFiles = sizeof(DROPFILES);
  std::memcpy(drop + 1, names.data(), names.size());
  GlobalUnlock(memory);
  PostMessageA(m_handle, WM_DROPFILES, reinterpret_cast<WPARAM>(memory), 0);
}

Window Window::FileNameField() const {
  // The dialog's one edit control, at whatever depth.
  const auto findEdit = [](HWND child, LPARAM found) -> BOOL {
    char kind[16] = "";
    GetClassNameA(child, kind, sizeof(kind));
    if (std::string(kind) != "Edit" || !IsWindowVisible(child))
      return TRUE;
    *reinterpret_cast<HWND*>(found) = child;
    return FALSE;
  };
  HWND edit = nullptr;
  WaitFor("the file dialog's name field", [&] {
    EnumChildWindows(m_handle, findEdit, reinterpret_cast<LPARAM>(&edit));
    return edit != nullptr;
  });
  return Window(edit);
}

void Window::TypeFileName(const std::string& path) const {
  FileNameField().SetText(path);
  PressControl(IDOK);
}

void Window::ChooseFile(const std::string& caption, const std::string& path, DWORD process) {
  const Window chooser = WaitForTop(caption, process);
  chooser.TypeFileName(path);
  chooser.WaitUntilGone("the dialog \"" + caption + "\"");
}

void Window::AnswerBox(const std::string& caption, const std::string& text, int button, DWORD process) {
  const Window box = WaitForTop(caption, process);
  CHECK(box.BoxText() == text);
  box.PressControl(button);
  box.WaitUntilGone("the box \"" + caption + "\"");
}

void TypeKey(WORD virtualKey) {
  SendKey(virtualKey, 0);
  SendKey(virtualKey, KEYEVENTF_KEYUP);
}

void TypeKeyWith(WORD held, WORD virtualKey) {
  SendKey(held, 0);
  TypeKey(virtualKey);
  SendKey(held, KEYEVENTF_KEYUP);
}

void TypeText(const std::string& text) {
  for (const char c : text) {
    const SHORT key = VkKeyScanA(c);
    if ((key & 0x100) != 0)
      TypeKeyWith(VK_SHIFT, LOBYTE(key));
    else
      TypeKey(LOBYTE(key));
  }
}

void TypeCharacter(wchar_t character) {
  INPUT inputs[2] = {};
  for (INPUT& input : inputs) {
    input.type = INPUT_KEYBOARD;
    input.ki.wScan = character;
    input.ki.dwFlags = KEYEVENTF_UNICODE;
  }
  inputs[1].ki.dwFlags |= KEYEVENTF_KEYUP;
  SendInput(2, inputs, sizeof(INPUT));
}

std::string ClipboardBytes() {
  std::string bytes;
  if (OpenClipboard(nullptr)) {
    if (const HANDLE data = GetClipboardData(CF_TEXT)) {
      bytes.assign(static_cast<const char*>(GlobalLock(data)), GlobalSize(data)); // with the system's zero
      GlobalUnlock(data);
    }
    CloseClipboard();
  }
  return bytes;
}
