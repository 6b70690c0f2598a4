#include "host/windows/TraceWindow.h"

#include "host/trace/TraceText.h"
#include "host/windows/WindowPlaces.h"
#include "host/windows/resource.h"

#include <algorithm>
#include <cstdio>
#include <exception>

namespace host {
namespace {

constexpr UINT_PTR kRefreshTimer = 1;
constexpr UINT kRefreshMs = 100;
constexpr SIZE kSmallest = {240, 180};

enum Column { kTime, kOwner, kCall, kBytes, kDuration };
constexpr struct {
  const char* title;
  int width; // in dialog units
  int format;
} kColumns[] = {{"Time", 48, LVCFMT_RIGHT},
                {"Owner", 32, LVCFMT_RIGHT},
                {"Call", 160, LVCFMT_LEFT},
                {"Bytes", 136, LVCFMT_LEFT},
                {"\xB5s", 32, LVCFMT_RIGHT}};

std::string TimeText(std::uint64_t time) {
  char text[40];
  std::snprintf(text, sizeof text, "%llu.%06llu", static_cast<unsigned long long>(time / 1000000),
                static_cast<unsigned long long>(time % 1000000));
  return text;
}

std::string CallText(const TraceLog::Row& row) {
  std::string text = RecordText(row.call);
  if (row.call.operation == ChannelOperation::kReceive && row.call.result == 0 && row.size == 0)
    text += ", nothing";
  if (row.repeated > 1)
    text += " (" + std::to_string(row.repeated) + " times)";
  return text;
}

// "3: id." and what does not fit told.
std::string BytesText(const TraceLog::Row& row) {
  if (row.size == 0)
    return {};
  std::string text = std::to_string(row.size) + ": ";
  for (const char c : row.call.bytes)
    text += c < ' ' || c > '~' ? '.' : c;
  return row.size > row.call.bytes.size() ? text + " ..." : text;
}

std::string ColumnText(const TraceLog::Row& row, int column) {
  switch (column) {
  case kTime:
    return TimeText(row.call.start);
  case kOwner:
    return row.call.owner != 0 ? std::to_string(row.call.owner) : std::string();
  case kCall:
    return CallText(row);
  case kBytes:
    return BytesText(row);
  default:
    return std::to_string(row.call.duration);
  }
}

} // namespace

void TraceWindow::Toggle(HWND owner) {
  if (IsShown()) {
    ShowWindow(m_window, SW_HIDE);
    return;
  }
  const bool isNew = !m_window;
  if (isNew)
    CreateDialogParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_TRACE), owner, DialogProc,
                       reinterpret_cast<LPARAM>(this));
  if (!m_window)
    return;
  Refresh();
  ShowWindow(m_window, SW_SHOW);
  if (isNew)
    PlaceBeside(owner, m_window);
}

void TraceWindow::End() {
  if (m_window)
    DestroyWindow(m_window);
}

INT_PTR CALLBACK TraceWindow::DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(window, DWLP_USER, lParam);
    reinterpret_cast<TraceWindow*>(lParam)->m_window = window;
  }
  auto* const self = reinterpret_cast<TraceWindow*>(GetWindowLongPtrA(window, DWLP_USER));
  try {
    return self && self->OnMessage(message, wParam, lParam);
  } catch (const std::exception&) { // memory ran out: what was to be shown is not
    return FALSE;
  }
}

bool TraceWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
  case WM_INITDIALOG:
    OnInit();
    return true;
  case WM_TIMER:
    if (IsShown())
      Refresh();
    return true;
  case WM_SIZE:
    Layout();
    return true;
  case WM_GETMINMAXINFO:
    reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {kSmallest.cx, kSmallest.cy};
    return true;
  case WM_NOTIFY: {
    auto* const notification = reinterpret_cast<NMHDR*>(lParam);
    if (notification->code != LVN_GETDISPINFOA)
      return false;
    GiveText(reinterpret_cast<NMLVDISPINFOA*>(lParam)->item);
    return true;
  }
  case WM_COMMAND:
    if (LOWORD(wParam) == IDC_TRACE_CLEAR) {
      m_log.Clear();
      Refresh();
    } else if (LOWORD(wParam) == IDCANCEL) {
      ShowWindow(m_window, SW_HIDE);
    } else {
      return false;
    }
    return true;
  case WM_DESTROY:
    m_window = nullptr;
    return true;
  default:
    return false;
  }
}

void TraceWindow::OnInit() {
  ListView_SetExtendedListViewStyle(List(), LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
  int index = 0;
  for (const auto& column : kColumns) {
    RECT width{0, 0, column.width, 0};
    MapDialogRect(m_window, &width);
    LVCOLUMNA made{};
    made.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
    made.fmt = column.format;
    made.cx = width.right;
    made.pszText = const_cast<char*>(column.title);
    SendMessageA(List(), LVM_INSERTCOLUMNA, static_cast<WPARAM>(index++), reinterpret_cast<LPARAM>(&made));
  }
  RECT window{}, list{};
  GetClientRect(m_window, &window);
  GetWindowRect(List(), &list);
  MapWindowPoints(nullptr, m_window, reinterpret_cast<POINT*>(&list), 2);
  m_margin = {window.right - list.right, window.bottom - list.bottom};
  SetTimer(m_window, kRefreshTimer, kRefreshMs, nullptr);
}

// The list has all the room but its margins.
void TraceWindow::Layout() const {
  RECT window{}, list{}, button{};
  GetClientRect(m_window, &window);
  GetWindowRect(List(), &list);
  MapWindowPoints(nullptr, m_window, reinterpret_cast<POINT*>(&list), 2);
  MoveWindow(List(), list.left, list.top, window.right - m_margin.cx - list.left,
             window.bottom - m_margin.cy - list.top, TRUE);
  const HWND clear = GetDlgItem(m_window, IDC_TRACE_CLEAR);
  GetWindowRect(clear, &button);
  const int height = button.bottom - button.top;
  MoveWindow(clear, list.left, window.bottom - list.top - height, button.right - button.left, height, TRUE);
}

// Goes along with what comes, unless its reader has gone back.
void TraceWindow::Refresh() {
  const std::uint64_t changes = m_log.Changes();
  if (changes == m_shown)
    return;
  m_shown = changes;
  const int before = ListView_GetItemCount(List());
  const bool follows = ListView_GetTopIndex(List()) + ListView_GetCountPerPage(List()) >= before;
  const int count = static_cast<int>(m_log.Count());
  ListView_SetItemCountEx(List(), count, LVSICF_NOSCROLL);
  if (follows && count > 0)
    ListView_EnsureVisible(List(), count - 1, FALSE);
}

void TraceWindow::GiveText(LVITEMA& item) {
  if ((item.mask & LVIF_TEXT) == 0)
    return;
  m_text = ColumnText(m_log.At(static_cast<std::size_t>(item.iItem)), item.iSubItem);
  item.pszText = m_text.data();
}

HWND TraceWindow::List() const {
  return GetDlgItem(m_window, IDC_TRACE_LIST);
}

} // namespace host
