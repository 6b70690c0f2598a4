#include "window/MessageBoxes.h"

#include "window/CDialog.h"
#include "window/SystemBox.h"
#include "window/WholeText.h"
#include "window/WindowPlace.h"

#include <algorithm>

namespace {

// Ids of the sign and the text in the system's own boxes.
constexpr int kSignId = 20;
constexpr int kTextId = 0xFFFF;

// In dialog units.
constexpr int kMargin = 7;
constexpr SIZE kSign{21, 20};
constexpr SIZE kButton{50, 14};

// The font of the system's boxes on a screen's device context.
class MessageFont {
public:
  MessageFont() : m_context(GetDC(nullptr)) {
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof(metrics);
    SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
    m_font = CreateFontIndirectA(&metrics.lfMessageFont);
    m_previous = SelectObject(m_context, m_font);
  }
  MessageFont(const MessageFont&) = delete;
  MessageFont& operator=(const MessageFont&) = delete;
  ~MessageFont() {
    SelectObject(m_context, m_previous);
    DeleteObject(m_font);
    ReleaseDC(nullptr, m_context);
  }

  HDC Context() const { return m_context; }
  int LineHeight() const {
    TEXTMETRICA metrics{};
    GetTextMetricsA(m_context, &metrics);
    return metrics.tmHeight;
  }

private:
  HDC m_context;
  HGDIOBJ m_font;
  HGDIOBJ m_previous;
};

// What a text takes up in a box on that work area.
class BoxText {
public:
  BoxText(const std::string& text, const RECT& screen) : m_screen(screen) {
    const MessageFont font;
    RECT place{0, 0, Widest(), 0};
    DrawTextA(font.Context(), text.c_str(), -1, &place, DT_CALCRECT | DT_WORDBREAK | DT_EXPANDTABS | DT_NOPREFIX);
    m_size = {place.right, place.bottom};
    m_lineHeight = font.LineHeight();
  }

  // The system does not tell how large its box will be. Above and below the text are the caption, the frame, the button
  // and margins, together about seven lines.
  bool FitsSystemBox() const {
    const int around = GetSystemMetrics(SM_CYCAPTION) + 6 * m_lineHeight;
    const int beside = GetSystemMetrics(SM_CXICON) + 4 * m_lineHeight;
    return m_size.cy + around <= m_screen.bottom - m_screen.top && m_size.cx + beside <= m_screen.right - m_screen.left;
  }
  // Of a window that breaks words where it must.
  int Width() const {
    const int wanted = m_size.cx + GetSystemMetrics(SM_CXVSCROLL) + m_lineHeight;
    return std::clamp(wanted, Widest() / 3, Widest()); // with room for the caption
  }

private:
  int Widest() const { return (m_screen.right - m_screen.left) * 5 / 8; }

  RECT m_screen;
  SIZE m_size{}; // wider than the widest line that is wanted only where a word is
  int m_lineHeight = 0;
};

// An empty dialog in the font of the system's boxes.
struct EmptyDialog {
  static constexpr WORD kMessageFont = 0x7FFF;

  DLGTEMPLATE layout{DS_MODALFRAME | DS_SETFONT | WS_POPUP | WS_CAPTION | WS_SYSMENU, 0, 0, 0, 0, 0, 0};
  WORD menu = 0, windowClass = 0, caption = 0;
  WORD pointSize = kMessageFont;
};
alignas(DWORD) constexpr EmptyDialog kEmptyDialog;

class CMessageWindow : public CDialog {
public:
  // The texts outlive the window. `width` is the text's, in pixels.
  CMessageWindow(const std::string& text, int width, const std::string& caption, UINT type)
      : CDialog(kEmptyDialog.layout), m_text(text), m_width(width), m_caption(caption), m_type(type) {}

protected:
  bool OnInitDialog() override;
  void OnCancel() override { EndDialog(IDOK); } // as with the system's box, whose one button Escape presses

private:
  SIZE Scaled(SIZE dialogUnits) const;
  HWND Add(const char* kind, const char* text, DWORD style, int id, RECT place) const;

  const std::string& m_text;
  const int m_width;
  const std::string& m_caption;
  const UINT m_type;
};

SIZE CMessageWindow::Scaled(SIZE dialogUnits) const {
  RECT rect{0, 0, dialogUnits.cx, dialogUnits.cy};
  MapDialogRect(GetSafeHwnd(), &rect);
  return {rect.right, rect.bottom};
}

HWND CMessageWindow::Add(const char* kind, const char* text, DWORD style, int id, RECT place) const {
  const HWND control = CreateWindowA(kind, text, WS_CHILD | WS_VISIBLE | style, place.left, place.top,
                                     place.right - place.left, place.bottom - place.top, GetSafeHwnd(),
                                     reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
  SendMessageA(control, WM_SETFONT, static_cast<WPARAM>(Send(WM_GETFONT)), FALSE);
  return control;
}

// Made for a text of one line, then stretched to what it needs.
bool CMessageWindow::OnInitDialog() {
  SetWindowText(m_caption);
  const SIZE margin = Scaled({kMargin, kMargin}), sign = Scaled(kSign), button = Scaled(kButton);
  const LONG left = m_type & MB_ICONMASK ? 2 * margin.cx + sign.cx : margin.cx;
  const LONG right = left + m_width;
  const LONG bottom = margin.cy + sign.cy;
  const LONG middle = (right + margin.cx) / 2;
  RECT window{0, 0, right + margin.cx, bottom + 2 * margin.cy + button.cy};
  AdjustWindowRect(&window, static_cast<DWORD>(GetWindowLongPtrA(GetSafeHwnd(), GWL_STYLE)), FALSE);
  SetWindowPos(GetSafeHwnd(), nullptr, 0, 0, window.right - window.left, window.bottom - window.top,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  if (const UINT which = (m_type & MB_ICONMASK) >> 4; which != 0) {
    const HWND control = Add("STATIC", "", SS_ICON, kSignId, {margin.cx, margin.cy, left - margin.cx, bottom});
    const HICON icon = LoadIconA(nullptr, MAKEINTRESOURCEA(32512 + which)); // the numbers of both follow each other
    SendMessageA(control, STM_SETICON, reinterpret_cast<WPARAM>(icon), 0);
  }
  Add("STATIC", "", SS_NOPREFIX | SS_EDITCONTROL, kTextId, {left, margin.cy, right, bottom});
  Add("BUTTON", "OK", WS_TABSTOP | BS_DEFPUSHBUTTON, IDOK,
      {middle - button.cx / 2, bottom + margin.cy, middle + button.cx / 2, bottom + margin.cy + button.cy});
  Send(DM_SETDEFID, IDOK);
  SetDlgItemText(kTextId, m_text); // a control cannot be made with a long one
  ShowWholeText(*this, kTextId);
  if (m_type & MB_SETFOREGROUND)
    SetForegroundWindow(GetSafeHwnd());
  MessageBeep(m_type & MB_ICONMASK);
  return true;
}

} // namespace

int ShowMessageBox(HWND owner, const std::string& text, const std::string& caption, UINT type) {
  const BoxText measured(text, WorkArea(owner));
  if ((type & MB_TYPEMASK) != MB_OK || measured.FitsSystemBox()) {
    const CSystemBox box(owner);
    return MessageBoxA(owner, text.c_str(), caption.c_str(), type);
  }
  CMessageWindow window(text, measured.Width(), caption, type);
  return std::max(static_cast<int>(window.DoModal(owner)), 0);
}
