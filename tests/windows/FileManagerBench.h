// The File Manager's window on a device that does what a test says.
#pragma once

#include "res/resource.h"
#include "tests/support/GuardedChannel.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/support/TestHost.h"

#include <commctrl.h>
#include <doctest/doctest.h>
#include <shlobj.h>

#include <cstring>

inline constexpr const char* kFileManagerCaption = "File manager";
inline constexpr const char* kLockedText = "Communication device is locked";
// What a refresh does to the device, which has three files.
inline constexpr const char* kRefresh =
    "Lock 500, ReadDirectory, Info, Count, Entry 0, Count, Entry 1, Count, Entry 2, Count, Unlock";

// A device whose transfers can be held up.
class FileDevice : public GuardedChannel {
public:
  static constexpr std::int32_t kAborted = -9;

  FileDevice() {
    duringTransfer = [this](TransferProgressCallback report, void* context) { return Transfer(report, context); };
  }

  // While set, transfers stand still after having reported `steps`, until the client aborts or this is cleared.
  std::atomic<bool> hold = false;
  std::atomic<std::uint32_t> steps = 40;
  // Called on the copying thread within each transfer, before it stands still. [set while there is none]
  std::function<void()> beforeHold;
  std::atomic<int> transfers = 0; // begun

private:
  std::int32_t Transfer(TransferProgressCallback report, void* context) {
    report(context, 0);
    report(context, steps);
    ++transfers;
    if (beforeHold)
      beforeHold();
    while (hold) {
      if (report(context, steps) != 0)
        return kAborted;
      Sleep(1);
    }
    return report(context, 100) != 0 ? kAborted : 0;
  }
};

// A list view, read and worked from outside.
class ListView {
public:
  explicit ListView(Window window) : m_window(window) {}

  Window Handle() const { return m_window; }
  int Count() const { return static_cast<int>(m_window.Send(LVM_GETITEMCOUNT)); }
  std::string Text(int row, int column) const {
    std::string text(2000, '\0');
    LVITEMA item{};
    item.iSubItem = column;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    m_window.Send(LVM_GETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    text.resize(std::strlen(text.c_str()));
    return text;
  }
  void SetText(int row, int column, const std::string& text) const {
    LVITEMA item{};
    item.iSubItem = column;
    item.pszText = const_cast<char*>(text.c_str());
    m_window.Send(LVM_SETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  }
  // Each row's texts, joined by '|'.
  std::vector<std::string> Rows() const {
    const auto columns =
        static_cast<int>(Window(reinterpret_cast<HWND>(m_window.Send(LVM_GETHEADER))).Send(HDM_GETITEMCOUNT));
    std::vector<std::string> rows(static_cast<std::size_t>(Count()));
    for (std::size_t row = 0; row < rows.size(); ++row) {
      for (int column = 0; column < columns; ++column)
        rows[row] += (column == 0 ? "" : "|") + Text(static_cast<int>(row), column);
    }
    return rows;
  }
  // "Header width alignment" of each column.
  std::vector<std::string> Columns() const {
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
  // These and no others.
  void Select(const std::vector<int>& rows) const {
    LVITEMA item{};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    m_window.Send(LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
    item.state = LVIS_SELECTED;
    for (const int row : rows)
      m_window.Send(LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  }

private:
  Window m_window;
};

// A host whose File Manager is shown, on the device or without a channel, and a folder for files.
struct FileManagerBench {
  enum class Channel { kDevice, kNone };
  explicit FileManagerBench(Channel channel = Channel::kDevice) {
    device.directory = {{3, 1, 100}, {7, 2, 400}, {200, 0, 500}};
    if (channel == Channel::kDevice)
      client.Connect(&device);
    window = client.Show(kFileManagerCaption);
  }

  TestHost host;
  TemporaryFolder folder;
  FileDevice device;
  TestClient client{host, ONX_OBJ_FILE_MANAGER};
  Window window;

  ListView Local() const { return ListView(window.Control(IDC_FM_LOCAL_LIST)); }
  ListView Device() const { return ListView(window.Control(IDC_FM_DEVICE_LIST)); }
  std::string LocalRows() const { return Joined(Local().Rows()); }
  std::string DeviceRows() const { return Joined(Device().Rows()); }
  std::string Summary() const { return window.Control(IDC_FM_SUMMARY).Text(); }

  // Drops files on the window, as the system does, and waits until they are there.
  void Drop(const std::vector<std::string>& paths) const {
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
  // Presses a button once it is enabled, and waits until the press has been handled or has opened a box.
  void Press(int id) const {
    WaitFor("control " + std::to_string(id) + " to be enabled", [&] { return window.Control(id).Enabled(); });
    window.PressControl(id);
    host.Settle();
    host.Settle(); // the press is a chain of posted messages
  }
  // No lock is held, and the window is enabled.
  void WaitUntilIdle() const {
    host.Settle(); // the answer to a box has been given, what follows may just begin
    WaitFor("the action to end", [&] { return window.Enabled() && device.LockDepth() == 0; });
  }
  // The same; then checks what was done to the device since its calls were forgotten.
  void CheckCalls(const std::string& calls) const {
    WaitUntilIdle();
    CHECK(Joined(device.Calls()) == calls);
  }
  // Presses a button, answers the system's dialog with that title by typing a name.
  void Choose(int button, const std::string& title, const std::string& path) const {
    Press(button);
    Window::ChooseFile(title, path);
  }
  void TypeInList(WORD virtualKey) const {
    Local().Handle().Focus();
    TypeKey(virtualKey);
  }
};
