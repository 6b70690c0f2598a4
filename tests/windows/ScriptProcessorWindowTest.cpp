// The Script Processor's window: scripts run, write their log, and end, whatever happens to the window.
#include "tests/windows/ScriptBench.h"

TEST_CASE("the log's lines") {
  ScriptBench bench;
  struct Case {
    std::string name;
    const char* script;
    Lines lines;
  };
  const Case cases[] = {
      {"overwritten from its start", R"(print("abc\rX\n");)", {"Xbc"}},
      {"continued by the next output", R"(print("ab"); print("c\n");)", {"abc"}},
      {"overwritten across outputs", R"(print("12345"); print("\rab"); print("c\n"); print("d");)", {"abc45", "d"}},
  };
  for (const Case& c : cases) {
    CAPTURE(c.name);
    CHECK(Joined(bench.Run(c.script)) == Joined(c.lines));
  }
}

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

TEST_CASE("a failed script shows its diagnostic in the log, then a box") {
  const ScriptBench bench;
  bench.Start(R"(var dword d; print("a\n"); d = 1 / d;)");
  Window::AnswerBox("Error", "Error executing script: error 21");
  bench.WaitForEnd();
  const std::string log = Joined(bench.Logged());
  CHECK(log.starts_with("a, Division by 0 error near line 1/"));
  CHECK(log.ends_with(" during executing"));
}

TEST_CASE("failures before a script runs") {
  ScriptBench bench;
  bench.Run(R"(print("old\n");)");

  SUBCASE("no channel") {
    bench.client.Connect(nullptr);
    bench.execute.Press();
    Window::AnswerBox("Error", "No communication device available!");
    CHECK(bench.execute.Text() == "Execute script");
    CHECK(bench.Logged().empty()); // cleared at every start
  }
  SUBCASE("the file was deleted after it was chosen") {
    DeleteFileA(bench.folder.PathOf("test.dcs").c_str());
    bench.execute.Press();
    Window::AnswerBox("Error", "Error executing script: error 8");
    bench.WaitForEnd();
  }
}

TEST_CASE("a script that fails behind an open file dialog is told of afterwards") {
  const ScriptBench bench;
  bench.Start("delay(300); exit(1);");
  bench.window.PressControl(IDC_SCRIPT_BROWSE);
  const Window dialog = Window::WaitForTop("Open a script file");
  WaitFor("the diagnostic", [&] { return bench.log.ItemCount() > 0; });
  bench.host.Settle();
  CHECK_FALSE(Window::FindTop("Error").Exists());
  dialog.PressControl(IDCANCEL);
  Window::AnswerBox("Error", "Error executing script: error 21");
  bench.WaitForEnd();
}

TEST_CASE("Stop ends a script, and the same button starts the next one") {
  ScriptBench bench;
  bench.Start(R"(print("on\n"); while (1) { })");
  bench.WaitForLine("on");
  CHECK(bench.execute.Text() == "Stop script");
  bench.Stop();
  CHECK(bench.Logged().back().starts_with("Processing aborted"));
  CHECK(Joined(bench.Run(R"(print("again\n");)")) == "again");
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

TEST_CASE("hiding the window does not disturb its script") {
  ScriptBench bench;
  bench.Start(R"(print("on\n"); while (1) { transmitstring("x"); })");
  bench.WaitForLine("on");
  bench.window.PressControl(IDOK);
  bench.window.WaitUntilGone("the window");
  bench.channel.ForgetCalls();
  WaitFor("the hidden window's script to go on", [&] { return bench.channel.Calls().size() > 10; });
  bench.client.Show(kScriptCaption);
  bench.Stop();
}

TEST_CASE("the channel is taken away during a run") {
  const ScriptBench bench;
  bench.Start(R"(print("on\n"); while (1) { transmitstring("x"); })");
  bench.WaitForLine("on");
  bench.client.Connect(nullptr); // the run keeps what it began with
  CHECK(bench.channel.LockDepth() > 0);
  bench.execute.Press();
  Window::AnswerBox("Error", "Error executing script: 21");
  WaitFor("the lock to go back to the channel that gave it", [&] { return bench.channel.LockDepth() == 0; });
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

TEST_CASE("a whole session by keyboard alone") {
  const ScriptBench bench;
  bench.folder.Write("keys.dcs", R"(print("typed\n");)");
  bench.log.Focus();
  TypeKey(VK_TAB);
  bench.window.Control(IDC_SCRIPT_BROWSE).WaitForFocus();
  TypeKey(VK_RETURN);
  const Window chooser = Window::WaitForTop("Open a script file");
  chooser.Activate();
  TypeText(bench.folder.PathOf("keys.dcs"));
  TypeKey(VK_RETURN);
  chooser.WaitUntilGone("the file dialog");
  WaitFor("the path", [&] { return bench.window.Control(IDC_SCRIPT_PATH).Text() == bench.folder.PathOf("keys.dcs"); });
  bench.window.Activate();
  bench.window.Control(IDC_SCRIPT_BROWSE).WaitForFocus();
  for (const int id : {IDC_SCRIPT_COPY, IDC_SCRIPT_NEW, IDC_SCRIPT_EDIT, IDC_SCRIPT_EXECUTE}) {
    TypeKey(VK_TAB);
    bench.window.Control(id).WaitForFocus();
  }
  TypeKey(VK_SPACE);
  bench.WaitForLine("typed");
  bench.WaitForEnd();
  TypeKey(VK_ESCAPE);
  bench.window.WaitUntilGone("the window after Escape");
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
  ask().PressControl(IDNO); // the file dialog comes again
  const Window question = ask();
  bench.client.Delete();
  CHECK_FALSE(question.Exists());
  CHECK(bench.folder.Read("old.dcs") == "exit();");
}
