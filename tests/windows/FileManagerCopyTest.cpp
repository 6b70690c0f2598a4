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

TEST_CASE("failures are told together afterwards") {
  CopyBench bench;
  bench.Drop({"C:\\a.bin", "C:\\b.bin", "C:\\c.bin"});
  struct Case {
    bool continueOnError;
    std::deque<std::int32_t> codes; // of the transfers
    const char* sent;
    const char* report;
  };
  const Case cases[] = {
      {false, {5}, "a", "Error during copying C:\\a.bin: error 5"},
      {true, {2, 0, 3}, "abc", "Error during copying C:\\a.bin: error 2\nError during copying C:\\c.bin: error 3"}};
  for (const Case& c : cases) {
    CAPTURE(c.report);
    const Window check = bench.window.Control(IDC_FM_CONTINUE_ON_ERROR);
    if (check.Checked() != c.continueOnError)
      bench.Press(IDC_FM_CONTINUE_ON_ERROR);
    bench.device.Fail("TransmitFile", c.codes);
    bench.device.ForgetCalls();
    bench.Press(IDC_FM_COPY_ALL);
    Window::WaitForTop("Error");
    CHECK(bench.device.LockDepth() >= 1); // the directory is still to be read
    std::string log = "Lock 500, ";
    for (const char* name = c.sent; *name; ++name)
      log += Sent(std::string("C:\\") + *name + ".bin") + ", ";
    for (const std::int32_t code : c.codes)
      log += code != 0 ? "GetInfoString " + std::to_string(code) + ", " : "";
    Window::AnswerBox("Error", c.report);
    bench.CheckCalls(log + kRefresh + ", Unlock");
  }
  CHECK_FALSE(Window::FindTop("Error").Exists());
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

TEST_CASE("an abort at any moment ends the copy, leaves no lock and no thread") {
  CopyBench bench;
  std::vector<std::string> paths(200, "C:\\a.bin");
  bench.Drop(paths);
  for (int moment = 0; moment < 25; ++moment) {
    CAPTURE(moment);
    bench.device.transfers = 0;
    bench.Press(IDC_FM_COPY_ALL);
    WaitFor("some transfers", [&] { return bench.device.transfers >= moment * 7; });
    // It may have just ended; otherwise it ends now.
    if (const Window progress = Window::FindTop(kProgressCaption); progress.Exists())
      PostMessageA(progress.Handle(), WM_COMMAND, IDCANCEL, 0);
    WaitFor("the end", [&] {
      const Window box = Window::FindTop("Error");
      if (box.Exists())
        PostMessageA(box.Handle(), WM_COMMAND, IDOK, 0);
      return bench.window.Enabled() && bench.device.LockDepth() == 0;
    });
    const int transfers = bench.device.transfers;
    bench.host.Settle();
    CHECK(bench.device.transfers == transfers);
  }
}

TEST_CASE("while an abort waits for a channel that takes its time, the host's messages are served") {
  CopyBench bench;
  bench.Drop({"C:\\a.bin"});
  bench.device.deaf = true;
  std::atomic<bool> answered = false;
  bench.device.beforeHold = [&] {
    WaitFor("the abort", [&] { return bench.device.state == 3; });
    // The channel asks a window of the host's thread before it comes to an end, as some do.
    SendMessageA(bench.host.MainWindow().Handle(), WM_NULL, 0, 0);
    answered = true;
  };
  bench.device.hold = true;
  bench.Press(IDC_FM_COPY_ALL);
  Window::WaitForTop(kProgressCaption);
  std::thread end([&] { bench.client.Delete(); });
  bench.device.state = 3;
  WaitFor("the answer", [&] { return answered.load(); });
  bench.device.hold = false;
  end.join();
  CHECK(bench.device.LockDepth() == 0);
}

TEST_CASE("everything that ends the window ends the copy first") {
  CopyBench bench;
  bench.Drop({"C:\\a.bin", "C:\\b.bin"});
  const Window progress = bench.StartAndHold();
  const auto copyHasEnded = [&](bool reports) {
    CHECK_FALSE(progress.Visible());
    if (reports) {
      Window::AnswerBox("Error", "Error during copying C:\\a.bin: error -9");
      bench.WaitUntilIdle();
    }
    CHECK(bench.host.Ask([&] { return bench.device.LockDepth(); }) == 0); // between two status updates
    CHECK(bench.device.transfers == 1);
  };
  SUBCASE("the object is deleted") {
    bench.client.Delete();
    CHECK_FALSE(bench.window.Exists());
    copyHasEnded(false);
  }
  SUBCASE("the window is destroyed from outside") {
    bench.host.Do([&] { DestroyWindow(bench.window.Handle()); });
    copyHasEnded(false);
    CHECK(bench.client.Show(kFileManagerCaption).Exists());
  }
  SUBCASE("the host hides the window") {
    bench.host.Do([&] { bench.client->CloseDialogNonModal(); });
    CHECK_FALSE(bench.window.Visible());
    copyHasEnded(true);
    CHECK(bench.client.Show(kFileManagerCaption).Handle() == bench.window.Handle());
  }
  SUBCASE("the progress dialog alone is destroyed") {
    bench.host.Do([&] { DestroyWindow(progress.Handle()); });
    copyHasEnded(true);
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
