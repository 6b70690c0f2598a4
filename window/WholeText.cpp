#include "window/WholeText.h"

#include "window/CTextMeasure.h"
#include "window/WindowPlace.h"

#include <algorithm>
#include <string_view>

namespace {

int Width(const RECT& place) {
  return place.right - place.left;
}
int Height(const RECT& place) {
  return place.bottom - place.top;
}

// In the dialog's client area.
RECT PlaceInside(HWND control, const CWnd& dialog) {
  RECT place{};
  GetWindowRect(control, &place);
  MapWindowPoints(nullptr, dialog.GetSafeHwnd(), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

int NeededHeight(const CWnd& dialog, HWND label, const std::string& text) {
  RECT client{};
  GetClientRect(label, &client);
  return CTextMeasure(dialog).WrappedHeight(text, client.right);
}

// Makes the dialog that much taller, below the line `from` of its client area.
void Stretch(CWnd& dialog, int from, int by) {
  const RECT window = dialog.GetWindowRect();
  SetWindowPos(dialog.GetSafeHwnd(), nullptr, 0, 0, Width(window), Height(window) + by,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  for (HWND control = GetWindow(dialog.GetSafeHwnd(), GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
    if (const RECT place = PlaceInside(control, dialog); place.top >= from)
      SetWindowPos(control, nullptr, place.left, place.top + by, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  }
}

// A field takes time for a line that grows with the square of its length, so what is longer than this many characters
// is broken here: behind a blank or, in a word that is wider than the field, anywhere.
constexpr std::size_t kLongLine = 500;

std::size_t BreakOf(std::string_view line, const CTextMeasure& measure, int width) {
  const std::size_t fitting = std::max<std::size_t>(measure.Fitting(line.substr(0, kLongLine), width), 1);
  const std::size_t blank = line.rfind(' ', fitting);
  return blank == std::string_view::npos ? fitting : blank + 1;
}

// A field ends its lines with both characters.
std::string LinesForField(std::string_view text, const CTextMeasure& measure, int width) {
  std::string lines;
  while (!text.empty()) {
    std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    if (end > kLongLine)
      end = BreakOf(text, measure, width);
    lines += text.substr(0, end);
    text.remove_prefix(end);
    if (text.starts_with('\r'))
      text.remove_prefix(1);
    if (text.starts_with('\n'))
      text.remove_prefix(1);
    lines += text.empty() ? "" : "\r\n";
  }
  return lines;
}

void ReplaceByField(const CWnd& dialog, HWND label, const RECT& place, const std::string& text) {
  const auto id = reinterpret_cast<HMENU>(static_cast<INT_PTR>(GetDlgCtrlID(label)));
  const HWND field = CreateWindowExA(
      WS_EX_STATICEDGE, "EDIT", "", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY,
      place.left, place.top, Width(place), Height(place), dialog.GetSafeHwnd(), id, nullptr, nullptr);
  if (!field)
    return; // the label shows the beginning
  DestroyWindow(label);
  SendMessageA(field, WM_SETFONT, static_cast<WPARAM>(dialog.Send(WM_GETFONT)), FALSE);
  SendMessageA(field, EM_SETLIMITTEXT, 0, 0); // as much as the system has room for
  RECT inside{};
  SendMessageA(field, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&inside));
  SetWindowTextA(field, LinesForField(text, CTextMeasure(dialog), Width(inside)).c_str());
}

} // namespace

void ShowWholeText(CWnd& dialog, int label) {
  const HWND control = dialog.GetDlgItem(label);
  const std::string text = dialog.GetDlgItemText(label);
  RECT place = PlaceInside(control, dialog);
  const int missing = NeededHeight(dialog, control, text) - Height(place);
  if (missing <= 0)
    return;
  const int room = std::max(Height(WorkArea(dialog.GetSafeHwnd())) - Height(dialog.GetWindowRect()), 0);
  const int growth = std::min(missing, room);
  Stretch(dialog, place.bottom, growth);
  place.bottom += growth;
  if (missing > room)
    ReplaceByField(dialog, control, place, text);
  else
    SetWindowPos(control, nullptr, 0, 0, Width(place), Height(place), SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}
