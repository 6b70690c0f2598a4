// Works windows as a person at the screen does: finds them, reads them, presses their buttons, types.
//
// All of it runs on the test's own thread, while the windows live on the host's thread or a script's; so a modal box
// that a press opens does not stop the test, which goes on to read and answer it.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

// Waits until the condition holds; fails the test, naming what was waited for, when that takes longer than the limit.
void WaitFor(const std::string& what, const std::function<bool()>& condition, int limitMs = 20000);

class Window {
public:
  Window() = default;
  explicit Window(HWND handle) : m_handle(handle) {}

  // A visible top-level window with that caption, of this process or another; waits for it to appear.
  static Window WaitForTop(const std::string& caption, DWORD process = GetCurrentProcessId());
  // The same without waiting; may be none.
  static Window FindTop(const std::string& caption, DWORD process = GetCurrentProcessId());

  HWND Handle() const { return m_handle; }
  bool Exists() const { return IsWindow(m_handle) != FALSE; }
  bool Visible() const { return IsWindowVisible(m_handle) != FALSE; }
  bool Enabled() const { return IsWindowEnabled(m_handle) != FALSE; }
  bool Checked() const { return Send(BM_GETCHECK) == BST_CHECKED; }
  std::string Text() const;
  RECT Place() const;       // on the screen
  RECT PlaceInside() const; // in the parent's client area
  SIZE ClientSize() const;
  // Lies whole in its parent's client area, a window on the screen but for the task bar.
  bool IsWhole() const;

  // The control with that id; fails the test when there is none.
  Window Control(int id) const;

  // --- acting

  // Presses a button, which must be visible and enabled, and does not wait for what that leads to.
  void Press() const;
  void PressControl(int id) const { Control(id).Press(); }
  void SetText(const std::string& text) const { Send(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str())); }
  // The caption's close box.
  void PressCloseBox() const { PostMessageA(m_handle, WM_SYSCOMMAND, SC_CLOSE, 0); }
  // To an outer size.
  void Resize(int width, int height) const {
    SetWindowPos(m_handle, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  }
  // Brings the window to the front; the keyboard focus goes to the control that had it last.
  void Activate() const;
  // Brings a control's window to the front and the keyboard focus to the control, as Tab does.
  void Focus() const;
  void WaitForFocus() const;
  void WaitUntilGone(const std::string& what) const {
    WaitFor(what + " to go away", [this] { return !Exists() || !Visible(); });
  }

  // --- list boxes
  std::size_t ItemCount() const { return static_cast<std::size_t>(Send(LB_GETCOUNT)); }
  // To be called on the window's thread while the list may change.
  std::vector<std::string> Items() const;
  void Select(int index) const { Send(LB_SETCURSEL, static_cast<WPARAM>(index)); }
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;

  // Drops files on the window, as the system does.
  void DropFiles(const std::vector<std::string>& paths) const;

  // --- the system's file dialogs
  // The field for the name, once it is there.
  Window FileNameField() const;
  // Enters a path and confirms.
  void TypeFileName(const std::string& path) const;
  // The same in the one with that caption, which goes away.
  static void ChooseFile(const std::string& caption, const std::string& path, DWORD process = GetCurrentProcessId());

  // --- message boxes: waits for one with that caption, checks its text, presses the button with that id
  static void AnswerBox(const std::string& caption, const std::string& text, int button = IDOK,
                        DWORD process = GetCurrentProcessId());
  std::string BoxText() const { return Control(0xFFFF).Text(); }

private:
  HWND m_handle = nullptr;
};

// One key, down and up, typed into whatever window has the keyboard focus.
void TypeKey(WORD virtualKey);
// The same while another key is held down.
void TypeKeyWith(WORD held, WORD virtualKey);
void TypeText(const std::string& text);
// A character that need not be on the keyboard.
void TypeCharacter(wchar_t character);

// What lies on the clipboard as text, with the zero behind it.
std::string ClipboardBytes();
