// The File Manager's window on a device that does what a test says.
#pragma once

#include "res/resource.h"
#include "tests/support/GuardedChannel.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/support/TestHost.h"

#include <commctrl.h>
#include <doctest/doctest.h>

#include <functional>

inline constexpr const char* kFileManagerCaption = "File manager";
inline constexpr const char* kLockedText = "Communication device is locked";

// A device whose transfers can be held up.
class FileDevice : public GuardedChannel {
public:
  static constexpr std::int32_t kAborted = -9;

  FileDevice();

  // While set, transfers stand still after having reported `steps`, until the client aborts or this is cleared.
  std::atomic<bool> hold = false;
  std::atomic<bool> deaf = false; // the client's wish to abort is not heard while transfers stand still
  std::atomic<std::uint32_t> steps = 40;
  // Called on the copying thread within each transfer, before it stands still. [set while there is none]
  std::function<void()> beforeHold;
  std::atomic<int> transfers = 0; // begun

private:
  std::int32_t Transfer(TransferProgressCallback report, void* context);
};

// A list view, read and worked from outside.
class ListView {
public:
  explicit ListView(Window window) : m_window(window) {}

  Window Handle() const { return m_window; }
  int Count() const { return static_cast<int>(m_window.Send(LVM_GETITEMCOUNT)); }
  std::string Text(int row, int column) const;
  void SetText(int row, int column, const std::string& text) const;
  // Each row's texts, joined by '|'.
  std::vector<std::string> Rows() const;
  // "Header width alignment" of each column.
  std::vector<std::string> Columns() const;
  void Select(const std::vector<int>& rows) const; // and no others

private:
  Window m_window;
};

// A host whose File Manager is shown on the device, and a folder for files. `connected` false: without a channel.
struct FileManagerBench {
  explicit FileManagerBench(bool connected = true);

  TestHost host;
  TemporaryFolder folder;
  FileDevice device;
  TestClient client{host, ONX_OBJ_FILE_MANAGER};
  Window window;

  ListView Local() const { return ListView(window.Control(IDC_FM_LOCAL_LIST)); }
  ListView Device() const { return ListView(window.Control(IDC_FM_DEVICE_LIST)); }
  std::string Summary() const { return window.Control(IDC_FM_SUMMARY).Text(); }

  // Drops files on the window, as the system does, and waits until they are there.
  void Drop(const std::vector<std::string>& paths) const;
  // Presses a button once it is enabled, and waits until the press has been handled or has opened a box.
  void Press(int id) const;
  void WaitUntilIdle() const; // no lock, window enabled
  // The same; then checks what was done to the device since its calls were forgotten.
  void CheckCalls(const std::string& calls) const;
  // Presses a button, answers the system's dialog with that title by typing a name.
  void Choose(int button, const std::string& title, const std::string& path) const;
  void TypeInList(WORD virtualKey) const;
};
