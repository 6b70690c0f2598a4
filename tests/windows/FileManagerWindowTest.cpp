// The File Manager's window where a text of steps cannot show it: places, sizes, numbers of files.
#include "tests/windows/FileManagerBench.h"

#include <algorithm>

TEST_CASE("the lists' columns, with room for the scroll bar that many rows bring") {
  FileManagerBench bench;
  const auto width = [](const ListView& list) { return list.Handle().ClientSize().cx; };
  const auto check = [&] {
    CHECK(Joined(bench.Local().Columns()) == "Filename " + std::to_string(width(bench.Local()) - 150) +
                                                 " left, File ID 50 right, File type 50 right, File mode 50 right");
    const LONG sizeColumn = std::max(width(bench.Device()) - 120L, 100L); // beside a scroll bar it may not fit
    CHECK(Joined(bench.Device().Columns()) ==
          "File ID 60 right, File type 60 right, File size " + std::to_string(sizeColumn) + " right");
  };
  check();
  const auto localBefore = width(bench.Local()), deviceBefore = width(bench.Device());
  bench.Drop(std::vector<std::string>(40, "C:\\a.bin"));
  bench.device.directory.resize(256);
  bench.Press(IDC_FM_REFRESH);
  check();
  CHECK(width(bench.Local()) < localBefore);
  CHECK(width(bench.Device()) < deviceBefore);
  CHECK((GetWindowLongA(bench.Local().Handle().Handle(), GWL_STYLE) & WS_HSCROLL) == 0);
}

TEST_CASE("dialogs and boxes come up over the middle of the window, but on the screen") {
  FileManagerBench bench;
  bench.Drop({"C:\\a.bin"});
  RECT screen{};
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &screen, 0);
  const auto check = [&](const Window& dialog, LONG inaccuracy = 0) {
    const auto begin = [](LONG length, LONG from, LONG to, LONG lowest, LONG highest) {
      return std::max(std::min((from + to - length) / 2, highest - length), lowest);
    };
    const RECT own = dialog.Place(), owner = bench.window.Place();
    const LONG left = begin(own.right - own.left, owner.left, owner.right, screen.left, screen.right);
    const LONG top = begin(own.bottom - own.top, owner.top, owner.bottom, screen.top, screen.bottom);
    CHECK(std::abs(own.left - left) <= inaccuracy);
    CHECK(std::abs(own.top - top) <= inaccuracy);
    dialog.PressControl(IDCANCEL);
    dialog.WaitUntilGone("the dialog");
  };
  for (const POINT place : {POINT{200, 150}, POINT{-600, -300}, POINT{1100, 900}}) {
    CAPTURE(place.x);
    SetWindowPos(bench.window.Handle(), nullptr, place.x, place.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    bench.Local().Select({0});
    bench.TypeInList(VK_SPACE);
    check(Window::WaitForTop("File properties"));
    bench.Press(IDC_FM_FORMAT);
    check(Window::WaitForTop("WARNING"));
    bench.Press(IDC_FM_ADD_FILES);
    check(Window::WaitForTop("Open source file(s)"), 48); // whose size the system changes afterwards
  }
}

TEST_CASE("a window opened while the channel is locked") {
  TestHost host;
  BenchDevice device;
  TestClient client(host, ONX_OBJ_FILE_MANAGER);
  client.Connect(&device);
  int other = 0;
  REQUIRE(device.Lock(&other, 0) == 0);
  // Showing returns when the box has been answered.
  const HWND parent = host.MainWindow().Handle();
  EONX_ERR_ERRCODE_ result = EONX_ERR_LOCKED;
  std::thread show([&] { host.Do([&] { result = client->ShowDialogNonModal(parent); }); });
  const Window box = Window::WaitForTop("Error");
  CHECK(box.BoxText() == kLockedText);

  SUBCASE("tells so and then stands there") {
    box.PressControl(IDOK);
    show.join();
    CHECK(result == EONX_ERR_NONE);
    CHECK(Window::WaitForTop(kFileManagerCaption).Visible());
  }
  SUBCASE("goes with its object") {
    client.Delete();
    show.join();
    CHECK(result == EONX_ERR_DIALOG);
    CHECK_FALSE(Window::FindTop(kFileManagerCaption).Exists());
  }
  device.Unlock(&other);
}

TEST_CASE("names of any length and of every printable character") {
  const FileManagerBench bench;
  const auto named = [](std::size_t length) { return "C:\\" + std::string(length - 3, 'n'); };
  std::string printable;
  for (int c = 0x20; c < 0x100; ++c) {
    const bool undefined = c == 0x7F || c == 0x81 || c == 0x8D || c == 0x8F || c == 0x90 || c == 0x9D;
    if (!undefined)
      printable += static_cast<char>(c);
  }
  bench.Drop({named(259), named(260), named(261), named(1000), printable});
  CHECK(bench.Local().Text(0, 0) == named(259));
  for (const int row : {1, 2, 3})
    CHECK(bench.Local().Text(row, 0) == named(260));
  CHECK(bench.Local().Text(4, 0) == printable);
}

TEST_CASE("ten thousand dropped files") {
  const FileManagerBench bench;
  std::vector<std::string> paths;
  for (int i = 0; i < 10000; ++i)
    paths.push_back("C:\\files\\" + std::to_string(i));
  bench.Drop(paths);
  CHECK(bench.Local().Text(0, 0) == paths.front());
  CHECK(bench.Local().Text(9999, 0) == paths.back());
  bench.Local().Select({-1}); // all of them
  bench.TypeInList(VK_DELETE);
  WaitFor("the rows to go", [&] { return bench.Local().Count() == 0; });
}

TEST_CASE("the progress dialog shows how far the copy is") {
  FileManagerBench bench;
  const std::string longPath = "C:\\" + std::string(240, 'w') + "\\end&name.bin";
  bench.Drop({"C:\\a.bin", "C:\\b.bin", longPath});
  bench.device.hold = true;
  bench.Press(IDC_FM_COPY_ALL);
  WaitFor("the first transfer", [&] { return bench.device.transfers == 1; });
  const Window progress = Window::WaitForTop("Progress");
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

TEST_CASE("the report names every failed file, however many there are") {
  FileManagerBench bench;
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
  CHECK(box.IsWhole());
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
