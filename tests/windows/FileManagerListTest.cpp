// The File Manager's list of local files: how files come into it, are changed, saved and loaded.
#include "tests/windows/FileManagerBench.h"

#include <filesystem>

namespace {

constexpr const char* kPropertiesCaption = "File properties";
constexpr const char* kNote = "NOTE: \"File ID\" and \"File type\" have no effect on files with mode \"program\"!";

struct ListBench : FileManagerBench {
  ListBench() : FileManagerBench(Channel::kNone) {}

  Window OpenProperties(const std::vector<int>& rows) const {
    Local().Select(rows);
    TypeInList(VK_SPACE);
    return Window::WaitForTop(kPropertiesCaption);
  }
  // The next row's dialog, behind one that was just ended.
  Window NextProperties(const std::string& path) const {
    Window dialog;
    WaitFor("the properties of " + path, [&] {
      dialog = Window::FindTop(kPropertiesCaption);
      return dialog.Exists() && dialog.Control(IDC_PROPERTIES_FILENAME).Text() == path;
    });
    return dialog;
  }
  void ChooseMode(const Window& dialog, int position) const {
    const Window mode = dialog.Control(IDC_PROPERTIES_FILE_MODE);
    mode.Send(CB_SETCURSEL, static_cast<WPARAM>(position));
    dialog.Send(WM_COMMAND, MAKEWPARAM(IDC_PROPERTIES_FILE_MODE, CBN_SELCHANGE),
                reinterpret_cast<LPARAM>(mode.Handle()));
  }
};

} // namespace

TEST_CASE("names of any length and of every printable character") {
  const ListBench bench;
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
  const ListBench bench;
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

TEST_CASE("files are added by the system's dialog, one or several at once") {
  const ListBench bench;
  bench.folder.Write("first.rbf", "1");
  bench.folder.Write("second.bin", "2");
  bench.Choose(IDC_FM_ADD_FILES, "Open source file(s)", bench.folder.PathOf("first.rbf"));
  bench.host.Settle();
  CHECK(bench.LocalRows() == bench.folder.PathOf("first.rbf") + "|0|1|program");

  bench.Press(IDC_FM_ADD_FILES);
  const Window dialog = Window::WaitForTop("Open source file(s)");
  dialog.TypeFileName(bench.folder.Path()); // a folder is opened
  bench.host.Settle();
  bench.host.Settle();
  dialog.TypeFileName("\"first.rbf\" \"second.bin\"");
  dialog.WaitUntilGone("the file dialog");
  bench.host.Settle();
  CHECK(bench.LocalRows() == bench.folder.PathOf("first.rbf") + "|0|1|program, " + bench.folder.PathOf("first.rbf") +
                                 "|0|1|program, " + bench.folder.PathOf("second.bin") + "|0|1|normal");
}

TEST_CASE("Delete removes what is selected, \"Clear\" everything") {
  const ListBench bench;
  bench.Drop({"C:\\a.bin", "C:\\b.bin", "C:\\c.bin", "C:\\d.bin"});
  bench.Local().Select({});
  bench.Local().Handle().Send(WM_KEYDOWN, VK_DELETE);
  CHECK(bench.Local().Count() == 4);
  bench.Local().Select({0, 2});
  bench.TypeInList(VK_DELETE);
  WaitFor("two rows to go", [&] { return bench.Local().Count() == 2; });
  CHECK(bench.LocalRows() == "C:\\b.bin|0|1|normal, C:\\d.bin|0|1|normal");
  bench.Press(IDC_FM_CLEAR);
  CHECK(bench.Local().Count() == 0);
}

TEST_CASE("numbers and modes that the user enters") {
  const ListBench bench;
  struct Case {
    const char *id, *type;
    int mode; // position in the sorted list
    const char* row;
  };
  const Case cases[] = {
      {"7", "9", 1, "7|9|normal"},
      {"300", "12abc", 0, "44|12|bit reverse"},
      {"256", "0", 2, "0|0|program"},
  };
  for (const Case& c : cases) {
    CAPTURE(c.row);
    bench.Press(IDC_FM_CLEAR);
    bench.Drop({"C:\\a.bin"});
    const Window dialog = bench.OpenProperties({0});
    dialog.Control(IDC_PROPERTIES_FILE_ID).SetText(c.id);
    dialog.Control(IDC_PROPERTIES_FILE_TYPE).SetText(c.type);
    bench.ChooseMode(dialog, c.mode);
    CHECK(dialog.Control(IDC_PROPERTIES_FILE_ID).Enabled() == (c.mode != 2));
    CHECK(dialog.Control(IDC_PROPERTIES_FILE_TYPE).Enabled() == (c.mode != 2));
    CHECK(dialog.Control(IDC_PROPERTIES_NOTE).Text() == (c.mode == 2 ? kNote : ""));
    dialog.PressControl(IDOK);
    bench.WaitUntilIdle();
    CHECK(bench.LocalRows() == std::string("C:\\a.bin|") + c.row);
  }
}

TEST_CASE("what is no number is refused, the id first") {
  const ListBench bench;
  bench.Drop({"C:\\a.bin"});
  bench.Local().SetText(0, 1, "12");
  bench.Local().SetText(0, 2, "34");
  const Window dialog = bench.OpenProperties({0});
  const Window id = dialog.Control(IDC_PROPERTIES_FILE_ID), type = dialog.Control(IDC_PROPERTIES_FILE_TYPE);
  id.SetText("");
  type.SetText("abc");
  dialog.PressControl(IDOK);
  Window::AnswerBox("Error", "Invalid file ID!");
  bench.host.Settle();
  CHECK(id.Text() == "12");
  CHECK(type.Text() == "abc");
  dialog.PressControl(IDOK);
  Window::AnswerBox("Error", "Invalid file type!");
  bench.host.Settle();
  CHECK(type.Text() == "34");

  // Enter in a field does nothing, on the button it confirms.
  id.SetText("99");
  id.Focus();
  TypeKey(VK_RETURN);
  bench.host.Settle();
  CHECK(dialog.Visible());
  dialog.Control(IDOK).Focus();
  TypeKey(VK_RETURN);
  dialog.WaitUntilGone("the dialog after Enter");
  bench.WaitUntilIdle();
  CHECK(bench.LocalRows() == "C:\\a.bin|99|34|normal");
}

TEST_CASE("a double-click edits what is selected, one row after the other") {
  const ListBench bench;
  bench.Drop({"C:\\a.bin", "C:\\b.bin", "C:\\c.bin"});
  bench.Local().Select({0, 2});
  RECT row{LVIR_LABEL, 0, 0, 0};
  bench.Local().Handle().Send(LVM_GETITEMRECT, 2, reinterpret_cast<LPARAM>(&row));
  PostMessageA(bench.Local().Handle().Handle(), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(row.left + 5, row.top + 5));
  bench.NextProperties("C:\\a.bin").PressControl(IDCANCEL);
  const Window second = bench.NextProperties("C:\\c.bin");
  second.Control(IDC_PROPERTIES_FILE_ID).SetText("8");
  second.PressControl(IDOK);
  bench.WaitUntilIdle();
  CHECK(bench.LocalRows() == "C:\\a.bin|0|1|normal, C:\\b.bin|0|1|normal, C:\\c.bin|8|1|normal");
}

TEST_CASE("the rows may go while their properties are open") {
  const ListBench bench;
  bench.Drop({"C:\\a.bin", "C:\\b.bin"});
  const Window dialog = bench.OpenProperties({0, 1});
  bench.Local().Handle().Send(LVM_DELETEALLITEMS);
  dialog.PressControl(IDOK);
  bench.WaitUntilIdle();
  CHECK(bench.Local().Count() == 0);
}

TEST_CASE("a job is saved and loaded") {
  const ListBench bench;
  const std::string job = bench.folder.PathOf("list.dcj");
  bench.Drop({bench.folder.PathOf("a.bin"), "D:\\far\\b.RBF", "abc"});
  bench.Local().SetText(0, 1, "300"); // what no dialog writes is read as the copy would
  bench.Local().SetText(0, 3, "Bit Reverse");
  bench.Local().SetText(1, 1, "x");
  bench.Local().SetText(1, 2, "");
  bench.Choose(IDC_FM_SAVE_JOB, "Save list file", bench.folder.PathOf("list")); // the extension comes by itself
  WaitFor("the job file", [&] { return bench.folder.Names() == std::vector<std::string>{"list.dcj"}; });
  CHECK(bench.folder.Read("list.dcj") ==
        "a.bin\t44\t1\tbit reverse\nD:\\far\\b.RBF\t0\t1\tprogram\nabc\t0\t1\tnormal\n");

  bench.Drop({"C:\\more.bin"});
  bench.Choose(IDC_FM_LOAD_JOB, "Open job file", job);
  WaitFor("the job's rows", [&] { return bench.Local().Count() == 3; });
  CHECK(bench.LocalRows() == bench.folder.PathOf("a.bin") + "|44|1|bit reverse, D:\\far\\b.RBF|0|1|program, " +
                                 bench.folder.PathOf("abc") + "|0|1|normal");

  // An existing file is replaced without a question.
  bench.Local().Select({0, 2});
  bench.TypeInList(VK_DELETE);
  WaitFor("two rows to go", [&] { return bench.Local().Count() == 1; });
  bench.Choose(IDC_FM_SAVE_JOB, "Save list file", job);
  bench.WaitUntilIdle();
  CHECK(bench.folder.Read("list.dcj") == "D:\\far\\b.RBF\t0\t1\tprogram\n");
}

TEST_CASE("jobs that cannot be loaded or saved") {
  const ListBench bench;
  PostMessageA(bench.window.Handle(), WM_COMMAND, IDC_FM_SAVE_JOB, 0); // the button is disabled
  Window::AnswerBox("Error", "No files in list that could be saved");
  bench.Drop({"C:\\a.bin"});
  bench.Choose(IDC_FM_LOAD_JOB, "Open job file", bench.folder.PathOf("missing.dcj"));
  Window::AnswerBox("Error", "Could not open list file");
  CHECK(bench.LocalRows() == "C:\\a.bin|0|1|normal");

  // A folder has the name that the new file would take.
  const std::filesystem::path folder = bench.folder.SystemPath() / "taken.dcj";
  std::filesystem::create_directory(folder);
  bench.Choose(IDC_FM_SAVE_JOB, "Save list file", bench.folder.PathOf("taken"));
  Window::AnswerBox("Error", "Could not create list file");
  bench.WaitUntilIdle();
  std::filesystem::remove(folder);
  CHECK(bench.LocalRows() == "C:\\a.bin|0|1|normal");
  CHECK(bench.folder.Names().empty());
}
