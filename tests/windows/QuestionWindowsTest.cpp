// Questions that scripts ask, answered in their windows.
#include "tests/windows/ScriptBench.h"

namespace {

constexpr const char* kQuestion = "Calibration";
// Scripts print what they got, and whether it was confirmed.
constexpr const char* kPrint = "\nprint(numtostr(v) + \" \" + numtostr(ok) + \"\\n\");";

} // namespace

TEST_CASE("a number within limits") {
  const ScriptBench bench;
  struct Case {
    const char* type;
    const char* call;
    const char* prompt;
    const char* initial;
    const char* beyond; // a limit
    const char* refusal;
    const char* answer;
    const char* printed;
  };
  const Case cases[] = {
      {"int32", R"(userinputint32("Calibration", "", 50, 0 - 5, 5, &ok))", "Enter information", "5", "-6",
       "Value must be >= -5", " -5x", "-5 1"},
      {"uint64", R"(userinputuint64("Calibration", "a && b", 0, 0, 18446744073709551614:U, &ok))", "a && b", "0",
       "18446744073709551615", "Value must be <= 18446744073709551614", "18446744073709551614",
       "18446744073709551614 1"},
  };
  for (const Case& c : cases) {
    CAPTURE(c.call);
    bench.Start("var " + std::string(c.type) + " v; var dword ok; ok = 7;\nv = " + c.call + ";" + kPrint);
    const Window question = Window::WaitForTop(kQuestion);
    CHECK(question.Control(IDC_INPUT_PROMPT).Text() == c.prompt);
    const Window field = question.Control(IDC_INPUT_VALUE);
    CHECK(field.Text() == c.initial);
    field.SetText(c.beyond);
    question.PressControl(IDOK);
    Window::AnswerBox("Error", c.refusal);
    CHECK(question.Visible());
    field.SetText("ohms");
    question.PressControl(IDOK);
    WaitFor("the field to be set back", [&] { return field.Text() == c.initial; });
    field.SetText(c.answer);
    question.PressControl(IDOK);
    bench.WaitForLine(c.printed);
    bench.WaitForEnd();
  }
}

TEST_CASE("a text") {
  const ScriptBench bench;
  const char* const script =
      R"(var string s; var dword ok; s = userinputstring("Calibration", "Serial number", "SN-1", &ok);
                                print(s + " " + numtostr(ok) + "\n");)";
  const auto ask = [&] {
    bench.Start(script);
    const Window question = Window::WaitForTop(kQuestion);
    CHECK(question.Control(IDC_INPUT_PROMPT).Text() == "Serial number");
    CHECK(question.Control(IDC_INPUT_VALUE).Text() == "SN-1");
    return question;
  };
  SUBCASE("typed on the keyboard, Enter") {
    const Window question = ask();
    question.Activate(); // the initial text is selected, so typing replaces it
    TypeText("Sn 42");
    WaitFor("the typed text", [&] { return question.Control(IDC_INPUT_VALUE).Text() == "Sn 42"; });
    TypeKey(VK_RETURN);
    bench.WaitForLine("Sn 42 1");
  }
  SUBCASE("Escape") {
    ask().Activate();
    TypeKey(VK_ESCAPE);
    bench.WaitForLine("SN-1 0");
  }
  bench.WaitForEnd();
}

TEST_CASE("one item of a list") {
  const ScriptBench bench;
  const auto ask = [&](const std::string& items, const std::string& initial) {
    bench.Start(R"(var int32 v; var dword ok; v = userlistinput("Calibration", "Range", )" + items + ", " + initial +
                ", &ok);" + kPrint);
    return Window::WaitForTop(kQuestion);
  };
  const char* const kItems = R"("1 V" + chr(0) + "10 V" + chr(0) + "auto")";
  SUBCASE("the default, by Enter") {
    const Window question = ask(kItems, "1");
    CHECK(question.Control(IDC_LIST_PROMPT).Text() == "Range");
    CHECK(Joined(question.Control(IDC_LIST_ITEMS).Items()) == "1 V, 10 V, auto");
    question.Activate();
    TypeKey(VK_RETURN);
    bench.WaitForLine("1 1");
  }
  SUBCASE("another one, by the arrow keys") {
    const Window question = ask(kItems, "1");
    question.Activate();
    TypeKey(VK_DOWN);
    TypeKey(VK_RETURN);
    bench.WaitForLine("2 1");
  }
  SUBCASE("a default outside the list selects nothing, and OK waits for a choice") {
    const Window question = ask(kItems, "3");
    const Window list = question.Control(IDC_LIST_ITEMS);
    CHECK(list.Send(LB_GETCURSEL) == LB_ERR);
    question.Send(WM_COMMAND, IDOK); // Enter, and waits for what it does
    CHECK(question.Visible());
    list.Select(0);
    question.PressControl(IDOK);
    bench.WaitForLine("0 1");
  }
  SUBCASE("Cancel") {
    ask(kItems, "0").PressControl(IDCANCEL);
    bench.WaitForLine("-1 0");
  }
  bench.WaitForEnd();
}

namespace {

// Scripts that are stopped, or left alone, while their first question is open.
const char* const kAskingScripts[] = {
    R"(messagebox("Calibration", "m"); print("on\n"); while (1) { })",
    R"(userinputdword("Calibration", "P", 1); print("on\n"); while (1) { })",
    R"(userlistinput("Calibration", "P", "a", 0); print("on\n"); while (1) { })",
    R"(while (1) { userinputstring("Calibration", "P", "a"); })", // every question that follows is answered too
};

} // namespace

TEST_CASE("a stop request waits for the answer") {
  const ScriptBench bench;
  for (const char* const script : kAskingScripts) {
    CAPTURE(script);
    bench.Start(script);
    const Window question = Window::WaitForTop(kQuestion);
    bench.execute.Press();
    bench.host.Settle();
    CHECK(question.Visible());
    question.PressCloseBox();
    Window::AnswerBox("Error", "Error executing script: error 21");
    bench.WaitForEnd();
  }
}

TEST_CASE("a question goes with its object, and so does the refusal in front of it") {
  ScriptBench bench;
  bench.Start(R"(userinputdword("Calibration", "P", 1, 0, 2);)");
  const Window question = Window::WaitForTop(kQuestion);
  question.Control(IDC_INPUT_VALUE).SetText("3");
  question.PressControl(IDOK);
  const Window refusal = Window::WaitForTop("Error");
  bench.client.Delete();
  CHECK_FALSE(refusal.Exists());
  CHECK_FALSE(question.Exists());
  CHECK(bench.channel.LockDepth() == 0);
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
    const Window question = Window::WaitForTop(kQuestion);
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
