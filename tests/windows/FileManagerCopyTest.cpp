// Copies to the device: the modal progress dialog, its end at any moment, and what is told afterwards.
#include "tests/windows/FileManagerBench.h"

#include <commctrl.h>

namespace {

constexpr const char* kProgressCaption = "Progress";

std::string Sent(const std::string& path, const std::string& properties = "0 1 0") {
  return "TransmitFile " + path + " " + properties + " 1 100";
}

struct CopyBench : FileManagerBench {
  CopyBench() { device.ForgetCalls(); }

  // Starts copying all rows, and stops in the middle of the first file.
  Window StartAndHold() {
    device.hold = true;
    const int before = device.transfers;
    Press(IDC_FM_COPY_ALL);
    WaitFor("the first transfer", [&] { return device.transfers == before + 1; });
    return Window::WaitForTop(kProgressCaption);
  }
};

} // namespace

TEST_CASE("all rows or the selected ones are sent in order, then the directory is read, under one lock") {
  CopyBench bench;
  bench.Drop({"C:\\a.bin", "C:\\b.rbf", "C:\\c.bin"});
  bench.Local().SetText(0, 1, "300");
  bench.Local().SetText(0, 2, "5");
  bench.Local().SetText(2, 3, "BIT REVERSE");
  bench.Press(IDC_FM_COPY_ALL);
  bench.CheckCalls("Lock 500, " + Sent("C:\\a.bin", "44 5 0") + ", " + Sent("C:\\b.rbf", "0 1 2") + ", " +
                   Sent("C:\\c.bin", "0 1 1") + ", " + kRefresh + ", Unlock");
  bench.device.ForgetCalls();
  bench.Local().Select({0, 2});
  bench.Press(IDC_FM_COPY_SELECTED);
  bench.CheckCalls("Lock 500, " + Sent("C:\\a.bin", "44 5 0") + ", " + Sent("C:\\c.bin", "0 1 1") + ", " + kRefresh +
                   ", Unlock");
}

TEST_CASE("nothing to copy") {
  const CopyBench bench;
  PostMessageA(bench.window.Handle(), WM_COMMAND, IDC_FM_COPY_ALL, 0);
  Window::AnswerBox("Error", "No files present to copy!");
  PostMessageA(bench.window.Handle(), WM_COMMAND, IDC_FM_COPY_SELECTED, 0);
  Window::AnswerBox("Error", "No files marked to copy!");
  CHECK(Joined(bench.device.Calls()) == "");
}

TEST_CASE("the progress dialog shows how far the copy is") {
  CopyBench bench;
  const std::string longPath = "C:\\" + std::string(240, 'w') + "\\end&name.bin";
  bench.Drop({"C:\\a.bin", "C:\\b.bin", longPath});
  const Window progress = bench.StartAndHold();
  CHECK_FALSE(bench.window.Enabled());

  const auto shows = [&](const std::string& count, LRESULT total, LRESULT file) {
    WaitFor("\"" + count + "\", " + std::to_string(total) + " and " + std::to_string(file) + " percent", [&] {
      return progress.Control(4044).Text() == count && progress.Control(4043).Send(PBM_GETPOS) == total &&
             progress.Control(4042).Send(PBM_GETPOS) == file;
    });
  };
  shows("0 files of 3 copied so far...", 0, 40);
  CHECK(progress.Control(4045).Text() == "Currently copying C:\\a.bin");
  bench.device.steps = 75;
  shows("0 files of 3 copied so far...", 0, 75);

  // On to the next file, which stands still in turn.
  const auto next = [&](std::uint32_t steps) {
    const int before = bench.device.transfers;
    bench.device.steps = steps;
    bench.device.beforeHold = [&] { bench.device.hold = true; };
    bench.device.hold = false;
    WaitFor("the next transfer", [&] { return bench.device.transfers == before + 1; });
  };
  next(0);
  shows("1 file of 3 copied so far...", 33, 0);
  next(100);
  shows("2 files of 3 copied so far...", 66, 100);
  const std::string name = progress.Control(4045).Text();
  CHECK(name.starts_with("Currently copying ...w"));
  CHECK(name.ends_with("w\\end&name.bin"));
  bench.device.beforeHold = nullptr;
  bench.device.hold = false;
  progress.WaitUntilGone("the progress dialog");
  bench.WaitUntilIdle();
}

TEST_CASE("a copy that is not to go on after errors ends at the first") {
  CopyBench bench;
  bench.Drop({"C:\\a.bin", "C:\\b.bin"});
  bench.Press(IDC_FM_CONTINUE_ON_ERROR);
  bench.device.Fail("TransmitFile", {5});
  bench.Press(IDC_FM_COPY_ALL);
  Window::WaitForTop("Error");
  CHECK(bench.device.LockDepth() >= 1); // the directory is still to be read
  Window::AnswerBox("Error", "Error during copying C:\\a.bin: error 5");
  bench.CheckCalls("Lock 500, " + Sent("C:\\a.bin") + ", GetInfoString 5, " + kRefresh + ", Unlock");
}

TEST_CASE("the report names every failed file, however many there are") {
  CopyBench bench;
  const int kFiles = 300;
  std::vector<std::string> paths(kFiles);
  std::string report;
  for (int i = 0; i < kFiles; ++i) {
    paths[static_cast<std::size_t>(i)] = "C:\\file " + std::to_string(i) + ".bin";
    report += (i == 0 ? "" : "\r\n") + ("Error during copying " + paths[static_cast<std::size_t>(i)]) + ": error 5";
  }
  bench.Drop(paths);
  bench.device.Fail("TransmitFile", std::deque<std::int32_t>(kFiles, 5));
  bench.Press(IDC_FM_COPY_ALL);
  const Window box = Window::WaitForTop("Error");
  CHECK_FALSE(bench.window.Enabled());
  CHECK(box.BoxText() == report);
  RECT screen{};
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &screen, 0);
  CHECK(box.Place().top >= screen.top);
  CHECK(box.Place().bottom <= screen.bottom);
  const Window text = box.Control(0xFFFF);
  box.Activate();
  box.Control(IDOK).WaitForFocus();
  TypeKey(VK_TAB);
  text.WaitForFocus();
  TypeKeyWith(VK_CONTROL, VK_END);
  WaitFor("the text to scroll to its end", [&] { return text.Send(EM_GETFIRSTVISIBLELINE) > kFiles / 2; });
  TypeKey(VK_RETURN);
  box.WaitUntilGone("the report");
  bench.WaitUntilIdle();
}

TEST_CASE("a copy whose refresh finds the channel locked") {
  CopyBench bench;
  bench.Drop({"C:\\a.bin"});
  bench.device.Fail("Lock", {0, 1});
  bench.Press(IDC_FM_COPY_ALL);
  Window::AnswerBox("Error", kLockedText);
  bench.CheckCalls("Lock 500, " + Sent("C:\\a.bin") + ", Lock 500, Unlock");
}

TEST_CASE("the user aborts") {
  CopyBench bench;
  bench.Drop({"C:\\a.bin", "C:\\b.bin"});
  const Window progress = bench.StartAndHold();
  const auto takeFocus = [&] {
    progress.Activate();
    progress.Control(IDCANCEL).WaitForFocus();
  };
  SUBCASE("by the button") {
    progress.PressControl(IDCANCEL);
  }
  SUBCASE("by Escape") {
    takeFocus();
    TypeKey(VK_ESCAPE);
  }
  SUBCASE("by the close box") {
    progress.PressCloseBox();
  }
  Window::AnswerBox("Error", "Error during copying C:\\a.bin: error -9");
  bench.CheckCalls("Lock 500, " + Sent("C:\\a.bin") + ", GetInfoString -9, " + kRefresh + ", Unlock");
}

TEST_CASE("a hidden window and a destroyed progress dialog end the copy") {
  for (const bool hides : {true, false}) {
    CAPTURE(hides);
    CopyBench bench;
    bench.Drop({"C:\\a.bin", "C:\\b.bin"});
    const Window progress = bench.StartAndHold();
    bench.host.Do([&] {
      if (hides)
        bench.client->CloseDialogNonModal();
      else
        DestroyWindow(progress.Handle());
    });
    CHECK_FALSE(progress.Visible());
    CHECK(bench.window.Visible() != hides);
    Window::AnswerBox("Error", "Error during copying C:\\a.bin: error -9");
    bench.WaitUntilIdle();
    CHECK(bench.device.transfers == 1);
    CHECK(bench.client.Show(kFileManagerCaption).Handle() == bench.window.Handle());
  }
}

TEST_CASE("a copy keeps the channel that it began with") {
  CopyBench bench;
  bench.Drop({"C:\\a.bin"});
  FileDevice second;
  second.directory = {{9, 9, 9}};
  bench.StartAndHold();
  SUBCASE("and ends there when the host disconnects it") {
    bench.client.Connect(nullptr);
    CHECK(bench.device.LockDepth() == 1);
    bench.device.hold = false;
    bench.CheckCalls("Lock 500, " + Sent("C:\\a.bin") + ", Unlock");
  }
  SUBCASE("and shows the directory of the one that came") {
    bench.client.Connect(&second);
    bench.device.hold = false;
    bench.CheckCalls("Lock 500, " + Sent("C:\\a.bin") + ", Unlock");
    bench.host.Settle(); // reading the second one is no part of the lock on the first
    CHECK(Joined(second.Calls()) == "Lock 500, ReadDirectory, Info, Count, Entry 0, Count, Unlock");
    CHECK(bench.DeviceRows() == "9|9|9");
  }
  bench.client.Connect(nullptr); // `second` ends first
}
