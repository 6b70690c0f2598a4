// The File Manager's window on a device that does what a test says.
#pragma once

#include "res/resource.h"
#include "tests/windows/support/BenchDevice.h"
#include "tests/windows/support/ListView.h"
#include "tests/windows/support/TestHost.h"

#include <doctest/doctest.h>

inline constexpr const char* kFileManagerCaption = "File manager";
inline constexpr const char* kLockedText = "Communication device is locked";

// A host whose File Manager is shown on the device.
struct FileManagerBench {
  FileManagerBench() {
    client.Connect(&device);
    window = client.Show(kFileManagerCaption);
  }

  TestHost host;
  BenchDevice device;
  TestClient client{host, ONX_OBJ_FILE_MANAGER};
  Window window;

  ListView Local() const { return ListView(window.Control(IDC_FM_LOCAL_LIST)); }
  ListView Device() const { return ListView(window.Control(IDC_FM_DEVICE_LIST)); }

  // Drops files on the window, as the system does, and waits until they are there.
  void Drop(const std::vector<std::string>& paths) const {
    const int count = Local().Count() + static_cast<int>(paths.size());
    window.DropFiles(paths);
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
  void TypeInList(WORD virtualKey) const {
    Local().Handle().Focus();
    TypeKey(virtualKey);
  }
};
