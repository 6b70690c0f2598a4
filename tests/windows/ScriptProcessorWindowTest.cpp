// The Script Processor's window where a text of steps cannot show it.
#include "tests/windows/ScriptBench.h"

TEST_CASE("the log keeps the last 5001 lines and scrolls to the end") {
  ScriptBench bench;
  const Lines items = bench.Run(R"(var dword i; i = 0; while (i < 5003) { print(numtostr(i) + "\n"); i = i + 1; })");
  REQUIRE(items.size() == 5001);
  CHECK(items.front() == "2");
  CHECK(items.back() == "5002");
  const LRESULT top = bench.log.Send(LB_GETTOPINDEX);
  RECT last{};
  bench.log.Send(LB_GETITEMRECT, 5000, reinterpret_cast<LPARAM>(&last));
  CHECK(top > 4900);
  CHECK(last.top < bench.log.ClientSize().cy);
}

TEST_CASE("horizontal scrolling covers the widest line that is there") {
  ScriptBench bench;
  bench.Run(R"(print("short\n"); print("a line that is quite a bit longer than the other one\n"); print("x\n");)");
  const LRESULT wide = bench.log.Send(LB_GETHORIZONTALEXTENT);
  bench.Run(R"(print("short\n"); print("x\n");)");
  const LRESULT narrow = bench.log.Send(LB_GETHORIZONTALEXTENT);
  CHECK(narrow > 0);
  CHECK(wide * 5 == narrow * 52); // the log's font has one width
  // A wide line leaves with the first lines.
  bench.Run(R"(var dword i; print("a wide line that goes away\n"); i = 0;
               while (i < 5001) { print("short\n"); i = i + 1; })");
  CHECK(bench.log.Send(LB_GETHORIZONTALEXTENT) == narrow);
  bench.Run("");
  CHECK(bench.log.Send(LB_GETHORIZONTALEXTENT) == 0);
}

TEST_CASE("a window that goes away ends the host's own run of its object") {
  const ScriptBench bench;
  HWND window = bench.window.Handle();
  const EONX_ERR_ERRCODE_ result = bench.host.Ask([&] {
    const OndScriptOutput destroy = [](void* handle, const char*) { DestroyWindow(*static_cast<HWND*>(handle)); };
    return bench.client->Call(ONX_CALL_EXECUTE_SCRIPT, reinterpret_cast<std::uint64_t>("while (1) { print(1); }"),
                              reinterpret_cast<std::uint64_t>(destroy), reinterpret_cast<std::uint64_t>(&window), 0);
  });
  CHECK(result == EONX_ERR_SCRIPT);
}

TEST_CASE("a window that goes away at once after the start ends its script") {
  ScriptBench bench;
  for (int i = 0; i < 20; ++i) {
    bench.Choose("while (1) { }");
    bench.host.Do([&] {
      SendMessageA(bench.execute.Handle(), BM_CLICK, 0, 0);
      DestroyWindow(bench.window.Handle());
    });
    CHECK(bench.channel.LockDepth() == 0);
    bench.Show();
  }
}

TEST_CASE("long lines, every byte, and a script of 50 MiB") {
  ScriptBench bench;
  SUBCASE("a line of 1 MiB") {
    const Lines items = bench.Run(R"(var string s; var dword i; i = 0; s = "0123456789abcdef";
                                     while (i < 16) { s = s + s; i = i + 1; } print(s); print("\n");)");
    REQUIRE(items.size() == 1);
    CHECK(items[0].size() == 1U << 20);
    CHECK(items[0].ends_with("cdef0123456789abcdef"));
  }
  SUBCASE("the bytes from 1 to 255") {
    const Lines items = bench.Run("var dword i; i = 1; while (i < 256) { print(chr(i)); i = i + 1; }");
    std::string overwriting; // the carriage return, 13, sends what follows to the start of the line
    for (int c = 14; c < 256; ++c)
      overwriting += static_cast<char>(c);
    REQUIRE(items.size() == 2);
    CHECK(items[0] == "\x01\x02\x03\x04\x05\x06\x07\x08\x09");
    CHECK(items[1] == overwriting);
  }
  SUBCASE("50 MiB") {
    std::string script;
    while (script.size() < 50U << 20)
      script += "# a comment line, as there are many in a long script\n";
    CHECK(Joined(bench.Run(script + "print(\"end\\n\");")) == "end");
  }
}

TEST_CASE("New makes an empty script and opens it in the editor") {
  const ScriptBench bench;
  const std::string path = bench.folder.PathOf("new.dcs");
  bench.window.PressControl(IDC_SCRIPT_NEW);
  Window::ChooseFile("New script file", bench.folder.PathOf("new")); // the extension is added
  WaitFor("the new script to be chosen", [&] { return bench.window.Control(IDC_SCRIPT_PATH).Text() == path; });
  CHECK(bench.folder.Read("new.dcs").empty());
  const auto closeEditor = [] { // a program of its own
    HWND editor = nullptr;
    WaitFor("the editor to show the script", [&] {
      editor = FindWindowA("Notepad", "new.dcs - Notepad");
      return editor != nullptr;
    });
    PostMessageA(editor, WM_CLOSE, 0, 0);
    WaitFor("the editor to close", [&] { return !IsWindow(editor); });
  };
  closeEditor();
  bench.window.PressControl(IDC_SCRIPT_EDIT);
  closeEditor();
}

TEST_CASE("New asks before it takes a name, and the question goes with the object") {
  ScriptBench bench;
  bench.folder.Write("old.dcs", "exit();");
  bench.window.PressControl(IDC_SCRIPT_NEW);
  const auto ask = [&] {
    Window question;
    Window::WaitForTop("New script file").TypeFileName(bench.folder.PathOf("old.dcs"));
    WaitFor("the question", [&] {
      question = Window::FindTop("New script file");
      return GetDlgItem(question.Handle(), IDYES) != nullptr;
    });
    return question;
  };
  const Window first = ask();
  first.PressControl(IDNO);
  first.WaitUntilGone("the question"); // which has the file dialog's caption; that one comes again
  const Window question = ask();
  bench.client.Delete();
  CHECK_FALSE(question.Exists());
  CHECK(bench.folder.Read("old.dcs") == "exit();");
}

// Both have a message loop of their own, inside of the question's.
TEST_CASE("a question goes with its object, also while its menu is open or it is being moved") {
  struct Case {
    WPARAM command;
    LPARAM key;
    DWORD state;
  };
  for (const Case& c : {Case{SC_KEYMENU, ' ', GUI_INMENUMODE}, Case{SC_MOVE, 0, GUI_INMOVESIZE}}) {
    CAPTURE(c.command);
    ScriptBench bench;
    bench.Start(R"(userinputdword("Calibration", "P", 1);)");
    const Window question = Window::WaitForTop("Calibration");
    question.Activate();
    PostMessageA(question.Handle(), WM_SYSCOMMAND, c.command, c.key);
    WaitFor("the menu or the move to begin", [&] {
      GUITHREADINFO thread{};
      thread.cbSize = sizeof(thread);
      return GetGUIThreadInfo(GetWindowThreadProcessId(question.Handle(), nullptr), &thread) &&
             (thread.flags & c.state) != 0;
    });
    bench.client.Delete();
    CHECK_FALSE(question.Exists());
  }
}
