#include "tests/windows/FileManagerBench.h"

#include <commctrl.h>
#include <shellapi.h>
#include <shlobj.h>

#include <cstring>

// --- the device

FileDevice::FileDevice() {
  duringTransfer = [this](TransferProgressCallback report, void* context) { return Transfer(report, context); };
}

std::int32_t FileDevice::Transfer(TransferProgressCallback report, void* context) {
  report(context, 0);
  report(context, steps);
  ++transfers;
  if (beforeHold)
    beforeHold();
  while (hold) {
    if (report(context, steps) != 0 && !deaf)
      return kAborted;
    Sleep(1);
  }
  return report(context, 100) != 0 && !deaf ? kAborted : 0;
}

// --- the lists

std::string ListView::Text(int row, int column) const {
  std::string text(2000, '\0');
  LVITEMA item{};
  item.iSubItem = column;
  item.pszText = text.data();
  item.cchTextMax = static_cast<int>(text.size());
  m_window.Send(LVM_GETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  text.resize(std::strlen(text.c_str()));
  return text;
}

void ListView::SetText(int row, int column, const std::string& text) const {
  LVITEMA item{};
  item.iSubItem = column;
  item.pszText = const_cast<char*>(text.c_str());
  m_window.Send(LVM_SETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

std::vector<std::string> ListView::Rows() const {
  const auto columns =
      static_cast<int>(Window(reinterpret_cast<HWND>(m_window.Send(LVM_GETHEADER))).Send(HDM_GETITEMCOUNT));
  std::vector<std::string> rows(static_cast<std::size_t>(Count()));
  for (std::size_t row = 0; row < rows.size(); ++row) {
    for (int column = 0; column < columns; ++column)
      rows[row] += (column == 0 ? "" : "|") + Text(static_cast<int>(row), column);
  }
  return rows;
}

std::vector<std::string> ListView::Columns() const {
  std::vector<std::string> columns;
  char text[100] = "";
  LVCOLUMNA column{};
  column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
  column.pszText = text;
  column.cchTextMax = sizeof(text);
  while (m_window.Send(LVM_GETCOLUMNA, columns.size(), reinterpret_cast<LPARAM>(&column)) != 0) {
    const bool right = (column.fmt & LVCFMT_JUSTIFYMASK) == LVCFMT_RIGHT;
    columns.push_back(std::string(column.pszText) + " " + std::to_string(column.cx) + (right ? " right" : " left"));
  }
  return columns;
}

void ListView::Select(const std::vector<int>& rows) const {
  LVITEMA item{};
  item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  m_window.Send(LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
  item.state = LVIS_SELECTED;
  for (const int row : rows)
    m_window.Send(LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

// --- the bench

FileManagerBench::FileManagerBench(bool connected) {
  device.directory = {{3, 1, 100}, {7, 2, 400}, {200, 0, 500}};
  if (connected)
    client.Connect(&device);
  window = client.Show(kFileManagerCaption);
}

void FileManagerBench::Drop(const std::vector<std::string>& paths) const {
  std::string names;
  for (const std::string& path : paths)
    names += path + '\0';
  names += '\0';
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DROPFILES) + names.size());
  auto* const drop = static_cast<DROPFILES*>(GlobalLock(memory));
  drop->pFiles = sizeof(DROPFILES);
  std::memcpy(drop + 1, names.data(), names.size());
  GlobalUnlock(memory);
  const int count = Local().Count() + static_cast<int>(paths.size());
  PostMessageA(window.Handle(), WM_DROPFILES, reinterpret_cast<WPARAM>(memory), 0);
  WaitFor("the dropped files", [&] { return Local().Count() == count; });
}

void FileManagerBench::Press(int id) const {
  WaitFor("control " + std::to_string(id) + " to be enabled", [&] { return window.Control(id).Enabled(); });
  window.PressControl(id);
  host.Settle();
  host.Settle(); // the press is a chain of posted messages
}

void FileManagerBench::WaitUntilIdle() const {
  host.Settle(); // the answer to a box has been given, what follows may just begin
  WaitFor("the action to end", [&] { return window.Enabled() && device.LockDepth() == 0; });
}

void FileManagerBench::CheckCalls(const std::string& calls) const {
  WaitUntilIdle();
  CHECK(Joined(device.Calls()) == calls);
}

void FileManagerBench::Choose(int button, const std::string& title, const std::string& path) const {
  Press(button);
  Window::ChooseFile(title, path);
}

void FileManagerBench::TypeInList(WORD virtualKey) const {
  Local().Handle().Focus();
  TypeKey(virtualKey);
}
