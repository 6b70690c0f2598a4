#include "host/windows/RowsWindow.h"

#include "host/windows/WindowIcon.h"
#include "host/windows/resource.h"
#include "window/Clipboard.h"

#include <algorithm>
#include <exception>

namespace host {
namespace {

constexpr UINT_PTR kRefreshTimer = 1;
constexpr UINT kRefreshMs = 100;
constexpr int kControls[] = {IDC_ROWS_FILTER_LABEL, IDC_ROWS_FILTER, IDC_ROWS_PAUSE, IDC_ROWS_COPY, IDC_ROWS_CLEAR};

void MoveBy(HWND control, int dx, int dy, bool isSize) {
  RECT place{};
  GetWindowRect(control, &place);
  const SIZE size{place.right - place.left, place.bottom - place.top};
  MapWindowPoints(nullptr, GetParent(control), reinterpret_cast<POINT*>(&place), 2);
  const POINT corner = isSize ? POINT{place.left, place.top} : POINT{place.left + dx, place.top + dy};
  MoveWindow(control, corner.x, corner.y, isSize ? size.cx + dx : size.cx, isSize ? size.cy + dy : size.cy, TRUE);
}

SIZE ClientSize(HWND window) {
  RECT client{};
  GetClientRect(window, &client);
  return {client.right, client.bottom};
}

} // namespace

bool RowsWindow::Show(HWND owner) {
  const bool isNew = !m_window;
  if (isNew)
    CreateDialogParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_ROWS), owner, DialogProc,
                       reinterpret_cast<LPARAM>(this));
  if (!m_window)
    return false;
  Refresh();
  ShowWindow(m_window, SW_SHOWNA);
  return isNew;
}

bool RowsWindow::TakeKey(MSG& message) {
  if (!m_window || (message.hwnd != m_window && !IsChild(m_window, message.hwnd)))
    return false;
  const bool isCopy = message.message == WM_KEYDOWN && message.wParam == 'C' && GetKeyState(VK_CONTROL) < 0;
  if (isCopy && message.hwnd == List()) {
    Copy();
    return true;
  }
  return IsDialogMessageA(m_window, &message) != FALSE;
}

void RowsWindow::End() {
  if (m_window)
    DestroyWindow(m_window);
}

// --- messages

INT_PTR CALLBACK RowsWindow::DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(window, DWLP_USER, lParam);
    reinterpret_cast<RowsWindow*>(lParam)->m_window = window;
  }
  auto* const self = reinterpret_cast<RowsWindow*>(GetWindowLongPtrA(window, DWLP_USER));
  try {
    return self && self->OnMessage(message, wParam, lParam);
  } catch (const std::exception&) { // memory ran out: what was to be shown is not
    return FALSE;
  }
}

bool RowsWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
  case WM_INITDIALOG:
    OnInit();
    return true;
  case WM_TIMER:
    if (IsShown() && !m_paused)
      Refresh();
    return true;
  case WM_SIZE:
    if (wParam != SIZE_MINIMIZED)
      Layout();
    return true;
  case WM_GETMINMAXINFO: {
    RECT smallest{0, 0, 330, 100};
    MapDialogRect(m_window, &smallest);
    reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {smallest.right, smallest.bottom};
    return true;
  }
  case WM_NOTIFY: {
    auto* const notification = reinterpret_cast<NMHDR*>(lParam);
    if (notification->code != LVN_GETDISPINFOA)
      return false;
    GiveText(reinterpret_cast<NMLVDISPINFOA*>(lParam)->item);
    return true;
  }
  case WM_COMMAND:
    return OnCommand(LOWORD(wParam), HIWORD(wParam));
  case WM_DESTROY:
    m_window = nullptr;
    return true;
  default:
    return false;
  }
}

bool RowsWindow::OnCommand(UINT command, UINT notification) {
  switch (command) {
  case IDC_ROWS_FILTER:
    if (notification != CBN_SELCHANGE)
      return false;
    m_rows.SetFilter(static_cast<std::size_t>(SendDlgItemMessageA(m_window, IDC_ROWS_FILTER, CB_GETCURSEL, 0, 0)));
    Reload();
    return true;
  case IDC_ROWS_PAUSE:
    Pause(IsDlgButtonChecked(m_window, IDC_ROWS_PAUSE) == BST_CHECKED);
    return true;
  case IDC_ROWS_COPY:
    Copy();
    return true;
  case IDC_ROWS_CLEAR:
    m_rows.Clear();
    Reload();
    return true;
  case IDCANCEL:
    Hide();
    return true;
  default:
    return false;
  }
}

void RowsWindow::OnInit() {
  SetWindowTextA(m_window, m_caption);
  SetWindowIcon(m_window);
  ListView_SetExtendedListViewStyle(List(), LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
  AddColumns();
  for (const std::string& filter : m_rows.Filters())
    SendDlgItemMessageA(m_window, IDC_ROWS_FILTER, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(filter.c_str()));
  SendDlgItemMessageA(m_window, IDC_ROWS_FILTER, CB_SETCURSEL, 0, 0);
  m_client = ClientSize(m_window);
  Reload();
  SetTimer(m_window, kRefreshTimer, kRefreshMs, nullptr);
}

void RowsWindow::AddColumns() {
  int index = 0;
  for (const RowColumn& column : m_rows.Columns()) {
    RECT width{0, 0, column.width, 0};
    MapDialogRect(m_window, &width);
    LVCOLUMNA made{};
    made.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
    made.fmt = column.format;
    made.cx = width.right;
    made.pszText = const_cast<char*>(column.title);
    SendMessageA(List(), LVM_INSERTCOLUMNA, static_cast<WPARAM>(index++), reinterpret_cast<LPARAM>(&made));
  }
}

// The list takes the room that there is, what stands below it keeps its distance from the lower edge.
void RowsWindow::Layout() {
  const SIZE client = ClientSize(m_window);
  const int dx = client.cx - m_client.cx, dy = client.cy - m_client.cy;
  m_client = client;
  MoveBy(List(), dx, dy, true);
  for (const int control : kControls)
    MoveBy(GetDlgItem(m_window, control), 0, dy, false);
}

// --- rows

void RowsWindow::Refresh() {
  const std::uint64_t changes = m_rows.Changes();
  if (changes == m_shown)
    return;
  m_shown = changes;
  m_cached = UINT64_MAX;
  const int before = ListView_GetItemCount(List());
  const bool follow = ListView_GetTopIndex(List()) + ListView_GetCountPerPage(List()) >= before;
  const std::uint64_t first = m_rows.First();
  const auto kept = std::lower_bound(m_numbers.begin(), m_numbers.end(), first);
  const auto gone = static_cast<std::size_t>(kept - m_numbers.begin());
  m_next = m_rows.Collect(std::max(m_next, first), m_numbers);
  if (gone != 0)
    DropOldest(gone);
  ShowCount(follow);
  RECT row{};
  if (gone != 0 && !follow && ListView_GetItemRect(List(), 0, &row, LVIR_BOUNDS))
    ListView_Scroll(List(), 0, -static_cast<int>(gone) * (row.bottom - row.top)); // what is read stays where it is
}

void RowsWindow::Reload() {
  ListView_SetItemState(List(), -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
  m_numbers.clear();
  m_cached = UINT64_MAX;
  m_shown = m_rows.Changes();
  m_next = m_rows.Collect(m_rows.First(), m_numbers);
  ShowCount(true);
}

// Selection and focus stay with their rows, which move up.
void RowsWindow::DropOldest(std::size_t count) {
  m_numbers.erase(m_numbers.begin(), m_numbers.begin() + static_cast<std::ptrdiff_t>(count));
  const int step = static_cast<int>(count);
  std::vector<int> selected;
  for (int row = ListView_GetNextItem(List(), -1, LVNI_SELECTED); row >= 0;
       row = ListView_GetNextItem(List(), row, LVNI_SELECTED))
    selected.push_back(row - step);
  const int focused = ListView_GetNextItem(List(), -1, LVNI_FOCUSED) - step;
  if (!selected.empty())
    ListView_SetItemState(List(), -1, 0, LVIS_SELECTED);
  for (const int row : selected) {
    if (row >= 0)
      ListView_SetItemState(List(), row, LVIS_SELECTED, LVIS_SELECTED);
  }
  if (focused >= 0)
    ListView_SetItemState(List(), focused, LVIS_FOCUSED, LVIS_FOCUSED);
}

// Goes along with what comes, unless its reader has gone back.
void RowsWindow::ShowCount(bool follow) {
  const int count = static_cast<int>(m_numbers.size());
  ListView_SetItemCountEx(List(), count, LVSICF_NOSCROLL);
  if (follow && count > 0)
    ListView_EnsureVisible(List(), count - 1, FALSE);
}

void RowsWindow::Pause(bool paused) {
  m_paused = paused;
  if (!paused) {
    m_rows.Thaw();
    Refresh();
    return;
  }
  Refresh();
  m_rows.Freeze();
}

// The selected rows, or all when none is selected; a line each, tabulators between the columns.
void RowsWindow::Copy() {
  std::string text;
  int row = ListView_GetNextItem(List(), -1, LVNI_SELECTED);
  const bool all = row < 0;
  const auto next = [&](int from) { return all ? from + 1 : ListView_GetNextItem(List(), from, LVNI_SELECTED); };
  for (row = next(-1); row >= 0 && static_cast<std::size_t>(row) < m_numbers.size(); row = next(row))
    text += TextOf(static_cast<std::size_t>(row)) + "\r\n";
  PutOnClipboard(m_window, text);
}

std::string RowsWindow::TextOf(std::size_t row) const {
  std::string line;
  for (const std::string& text : m_rows.Texts(m_numbers[row]))
    line.append(text).append("\t");
  line.resize(line.find_last_not_of('\t') + 1);
  return line;
}

void RowsWindow::GiveText(LVITEMA& item) {
  const auto row = static_cast<std::size_t>(item.iItem);
  if ((item.mask & LVIF_TEXT) == 0 || row >= m_numbers.size())
    return;
  if (m_cached != m_numbers[row]) {
    m_texts = m_rows.Texts(m_numbers[row]);
    m_cached = m_numbers[row];
  }
  item.pszText = m_texts[static_cast<std::size_t>(item.iSubItem)].data();
}

HWND RowsWindow::List() const {
  return GetDlgItem(m_window, IDC_ROWS_LIST);
}

} // namespace host
