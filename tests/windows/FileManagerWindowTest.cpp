// The File Manager's window as a whole, and the device's side of it.
#include "tests/windows/FileManagerBench.h"

#include <algorithm>

namespace {

constexpr const char* kFormatQuestion = "You have selected to format the device.\n"
                                        "This will destroy all data stored on the device.\n\n"
                                        "Yes: Format all blocks on the device\n"
                                        "No: Format only the blocks that are marked as used\n"
                                        "Cancel: Have mercy on me!";

std::string DeleteQuestion(std::size_t files) {
  return "Deleting " + std::to_string(files) + (files == 1 ? " file" : " files") + " from device, are you sure?";
}

// Presses a button whose action asks first, and answers it.
void PressAndAnswer(FileManagerBench& bench, int id, const std::string& caption, const std::string& question,
                    int answer) {
  bench.device.ForgetCalls();
  bench.Press(id);
  Window::AnswerBox(caption, question, answer);
}

} // namespace

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

TEST_CASE("which buttons are enabled") {
  FileManagerBench bench;
  struct Case {
    bool connected, open, rows, localSelected, deviceSelected;
    const char* enabled;
  };
  const char* const always = "Add files Clear Load job Close";
  const Case cases[] = {
      {false, true, true, true, true, "Save job"},
      {true, false, true, true, true, "Save job"},
      {true, true, false, false, false, "Refresh Format"},
      {true, true, true, true, false, "Save job Copy selected -> Copy all -> Refresh Format"},
      {true, true, false, false, true, "Refresh Format Delete file(s)"},
  };
  const auto list = [&](std::initializer_list<int> ids) {
    std::string enabled;
    for (const int id : ids) {
      if (bench.window.Control(id).Enabled())
        enabled += (enabled.empty() ? "" : " ") + bench.window.Control(id).Text();
    }
    return enabled;
  };
  for (const Case& c : cases) {
    CAPTURE(c.enabled);
    bench.Press(IDC_FM_CLEAR);
    if (c.rows)
      bench.Drop({"C:\\a.bin", "C:\\b.bin"});
    bench.Local().Select(c.localSelected ? std::vector{1} : std::vector<int>{});
    bench.Device().Select(c.deviceSelected ? std::vector{0, 2} : std::vector<int>{});
    bench.device.state = c.open ? 1 : 2;
    bench.client.Connect(c.connected ? &bench.device : nullptr);
    CHECK(list({4040, 4022, 4026, 4024, 4037, 4023}) == c.enabled);
    CHECK(list({4025, 4038, 4039, 1}) == always);
  }
}

TEST_CASE("without a channel the rows alone enable saving, at once") {
  const FileManagerBench bench(FileManagerBench::Channel::kNone);
  const Window save = bench.window.Control(IDC_FM_SAVE_JOB);
  bench.Drop({"C:\\a.bin", "C:\\b.bin"});
  CHECK(save.Enabled());
  bench.Local().Select({0, 1});
  bench.Local().Handle().Send(WM_KEYDOWN, VK_DELETE);
  bench.host.Settle();
  CHECK_FALSE(save.Enabled());
}

TEST_CASE("the keyboard stays in the window when the focused button is disabled") {
  FileManagerBench bench;
  const Window refresh = bench.window.Control(IDC_FM_REFRESH);
  refresh.Focus();
  bench.device.state = 0;
  WaitFor("\"Refresh\" to be disabled", [&] { return !refresh.Enabled(); });
  bench.window.Control(IDOK).WaitForFocus();
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

TEST_CASE("the directory is read when the window opens and on \"Refresh\"") {
  FileManagerBench bench;
  CHECK(Joined(bench.device.Calls()) == kRefresh);
  CHECK(bench.DeviceRows() == "3|1|100, 7|2|400, 200|0|500");

  bench.device.directory = {{255, 255, 4294967295}};
  bench.device.info = {4294967295, 4294967295, 1, 4294967295, 4294967295};
  bench.device.ForgetCalls();
  bench.Press(IDC_FM_REFRESH);
  CHECK(Joined(bench.device.Calls()) == "Lock 500, ReadDirectory, Info, Count, Entry 0, Count, Unlock");
  CHECK(bench.DeviceRows() == "255|255|4294967295");
  CHECK(bench.Summary() ==
        "4294967295 bytes in 1 files\nrequire 4294967295 bytes on disk\n18446744065119617025 bytes free");
}

TEST_CASE("a refresh in which one call fails") {
  FileManagerBench bench;
  struct Case {
    const char* operation;
    const char* log;
    const char* summary;
    const char* rows;
  };
  const char* const good = "1000 bytes in 3 files\nrequire 1536 bytes on disk\n51200 bytes free";
  const char* const allRows = "3|1|100, 7|2|400, 200|0|500";
  const Case cases[] = {
      {"ReadDirectory",
       "Lock 500, ReadDirectory, GetInfoString 5, Count, Entry 0, Count, Entry 1, Count, Entry 2, Count, Unlock",
       "Could not read device directory:\nerror 5", allRows},
      {"Info", kRefresh, "0 bytes in 0 files\nrequire 0 bytes on disk\n0 bytes free", allRows},
      {"Entry", kRefresh, good, "0|0|0, 7|2|400, 200|0|500"},
  };
  for (const Case& c : cases) {
    CAPTURE(c.operation);
    bench.device.Fail(c.operation, {5});
    bench.device.ForgetCalls();
    bench.Press(IDC_FM_REFRESH);
    bench.CheckCalls(c.log);
    CHECK(bench.Summary() == c.summary);
    CHECK(bench.DeviceRows() == c.rows);
  }
  bench.Press(IDC_FM_REFRESH);
  CHECK(bench.Summary() == good);
}

TEST_CASE("deleting asks, deletes in the list's order up to the first failure and reads the directory again") {
  struct Case {
    std::vector<int> rows;
    int answer;
    const char* failing; // operation
    std::deque<std::int32_t> codes;
    const char* error;
    const char* calls;
  };
  const Case cases[] = {
      {{0}, IDNO, "", {}, nullptr, ""},
      {{2, 0},
       IDYES,
       "",
       {},
       nullptr,
       "Lock 500, Delete 3, Delete 200, Lock 500, ReadDirectory, Info, Count, Entry 0, Count, Unlock, Unlock"},
      {{0, 1, 2},
       IDYES,
       "Delete",
       {0, 6},
       "Could not delete file with ID 7: error 6",
       "Lock 500, Delete 3, Delete 7, GetInfoString 6, Lock 500, ReadDirectory, Info, Count, Entry 0, Count, Entry 1, "
       "Count, Unlock, Unlock"},
      {{0}, IDYES, "Lock", {0, 1}, kLockedText, "Lock 500, Delete 3, Lock 500, Unlock"},
  };
  for (const Case& c : cases) {
    CAPTURE(c.calls);
    FileManagerBench bench;
    bench.device.Fail(c.failing, c.codes);
    bench.Device().Select(c.rows);
    PressAndAnswer(bench, IDC_FM_DELETE_FILES, "Warning", DeleteQuestion(c.rows.size()), c.answer);
    if (c.error)
      Window::AnswerBox("Error", c.error);
    bench.CheckCalls(c.calls);
  }
}

TEST_CASE("a row whose first column is no number is not deleted") {
  FileManagerBench bench;
  bench.Device().SetText(0, 0, "abc");
  bench.Device().SetText(1, 0, " 263x"); // 7 in 8 bits
  bench.Device().Select({0, 1, 2});
  PressAndAnswer(bench, IDC_FM_DELETE_FILES, "Warning", DeleteQuestion(3), IDYES);
  bench.CheckCalls(
      "Lock 500, Delete 7, Delete 200, Lock 500, ReadDirectory, Info, Count, Entry 0, Count, Unlock, Unlock");
  CHECK(bench.DeviceRows() == "3|1|100");
}

TEST_CASE("formatting") {
  FileManagerBench bench;
  struct Case {
    int answer;
    std::int32_t code;
    const char* log;
  };
  const Case cases[] = {
      {IDYES, 0, "Lock 500, Format 0, Lock 500, ReadDirectory, Info, Count, Unlock, Unlock"},
      {IDNO, 0, "Lock 500, Format 1, Lock 500, ReadDirectory, Info, Count, Unlock, Unlock"},
      {IDCANCEL, 0, "Lock 500, Unlock"},
      {IDYES, -3,
       "Lock 500, Format 0, Lock 500, ReadDirectory, Info, Count, Entry 0, Count, Unlock, Unlock, GetInfoString -3"},
  };
  for (const Case& c : cases) {
    CAPTURE(c.answer);
    bench.device.directory = {{3, 1, 100}};
    bench.device.ForgetCalls();
    bench.device.Fail("Format", {c.code});
    bench.Press(IDC_FM_FORMAT);
    const Window box = Window::WaitForTop("WARNING");
    CHECK((GetWindowLongA(GetDlgItem(box.Handle(), IDCANCEL), GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON);
    CHECK(bench.device.LockDepth() >= 1); // the channel is held while the question is open
    Window::AnswerBox("WARNING", kFormatQuestion, c.answer);
    if (c.code != 0)
      Window::AnswerBox("Error", "Could not format device: error -3");
    bench.CheckCalls(c.log);
  }
}

TEST_CASE("while another client holds the channel every action says so and touches nothing") {
  FileManagerBench bench;
  bench.Drop({"C:\\a.bin"});
  bench.Local().Select({0});
  bench.Device().Select({0});
  for (const int id : {IDC_FM_COPY_SELECTED, IDC_FM_DELETE_FILES})
    WaitFor("the buttons to be enabled", [&] { return bench.window.Control(id).Enabled(); });
  int other = 0;
  REQUIRE(bench.device.Lock(&other, 0) == 0);
  bench.device.ForgetCalls();
  for (const int id : {IDC_FM_REFRESH, IDC_FM_FORMAT, IDC_FM_COPY_ALL, IDC_FM_COPY_SELECTED, IDC_FM_DELETE_FILES}) {
    CAPTURE(id);
    bench.Press(id);
    if (id == IDC_FM_DELETE_FILES)
      Window::AnswerBox("Warning", DeleteQuestion(1), IDYES);
    Window::AnswerBox("Error", kLockedText);
  }
  CHECK(Joined(bench.device.Calls()) == "Lock 500, Lock 500, Lock 500, Lock 500, Lock 500");
  bench.device.Unlock(&other);
}

TEST_CASE("a window opened while the channel is locked") {
  TestHost host;
  FileDevice device;
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

TEST_CASE("what happens behind an open question") {
  struct Question {
    int button;
    const char* caption;
    std::string text;
    int no;
  };
  const Question questions[] = {
      {IDC_FM_DELETE_FILES, "Warning", DeleteQuestion(1), IDNO},
      {IDC_FM_FORMAT, "WARNING", kFormatQuestion, IDCANCEL},
  };
  for (const Question& question : questions) {
    CAPTURE(question.caption);
    FileManagerBench bench;
    FileDevice second;
    const auto ask = [&] {
      bench.Device().Select({0});
      bench.Press(question.button);
      return Window::WaitForTop(question.caption);
    };
    const auto answer = [&](int button) {
      Window::AnswerBox(question.caption, question.text, button);
      bench.WaitUntilIdle();
    };

    // The channel goes, or another one comes: nothing is done to either, and no lock stays behind.
    for (FileDevice* const next : {static_cast<FileDevice*>(nullptr), &second}) {
      ask();
      bench.client.Connect(next);
      CHECK(bench.device.LockDepth() == 0);
      bench.device.ForgetCalls();
      answer(IDYES);
      bench.CheckCalls("");
      CHECK(second.Calls().empty());
      bench.client.Connect(&bench.device);
    }

    // A program presses buttons.
    ask();
    bench.device.ForgetCalls();
    for (const int id : {IDC_FM_REFRESH, IDC_FM_FORMAT, IDC_FM_DELETE_FILES, IDC_FM_COPY_ALL})
      bench.window.Send(WM_COMMAND, static_cast<WPARAM>(id));
    CHECK(Joined(bench.device.Calls()) == "");
    answer(question.no);
  }
}
