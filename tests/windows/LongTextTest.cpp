// Texts of any length in questions and messages: they are shown whole, within the screen, and the keyboard works on.
#include "tests/windows/ScriptBench.h"

namespace {

constexpr const char* kCaption = "Calibration";

// A text as a script makes it.
struct LongText {
  const char* name;
  int count;         // of
  const char* piece; // what it consists of, as it stands in the script
  bool scrolls;      // is too long for the screen
  int linesAtLeast;  // that it takes in a question

  std::string Script(const std::string& call) const {
    return "var string s; var dword i; var dword v; while (i < " + std::to_string(count) + ") { s += \"" + piece +
           "\" + numtostr(i); i += 1; }\n" + call;
  }
  std::string Text() const {
    std::string unescaped = piece;
    if (const std::size_t end = unescaped.find("\\n"); end != std::string::npos)
      unescaped.replace(end, 2, "\n");
    std::string text;
    for (int i = 0; i < count; ++i)
      text += unescaped + std::to_string(i);
    return text;
  }
};

const LongText kTexts[] = {{"short", 1, "Ohms ", false, 1},
                           {"30 lines", 30, "Set the decade box.\\n", false, 31},
                           {"500 lines", 500, "Set the decade box.\\n", true, 501},
                           {"a line without blanks", 60, "Set_the_decade_box.", false, 12},
                           {"an endless line without blanks", 2500, "Set_the_decade_box.", true, 200}};

// A text without what breaks its lines.
std::string Unbroken(std::string text) {
  std::erase_if(text, [](char c) { return c == '\r' || c == '\n'; });
  return text;
}

RECT WorkArea() {
  RECT area{};
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
  return area;
}

bool IsWithin(const RECT& inner, const RECT& outer) {
  return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
         inner.bottom <= outer.bottom;
}

RECT ClientArea(const Window& window) {
  return {0, 0, window.ClientSize().cx, window.ClientSize().cy};
}

int LineHeight(const Window& control) {
  const HDC context = GetDC(control.Handle());
  const HGDIOBJ before = SelectObject(context, reinterpret_cast<HGDIOBJ>(control.Send(WM_GETFONT)));
  TEXTMETRICA metrics{};
  GetTextMetricsA(context, &metrics);
  SelectObject(context, before);
  ReleaseDC(control.Handle(), context);
  return metrics.tmHeight;
}

void CheckShownWhole(const LongText& text, const Window& window, int id) {
  const Window control = window.Control(id);
  CHECK(Unbroken(control.Text()) == Unbroken(text.Text()));
  CHECK(IsWithin(window.Place(), WorkArea()));
  CHECK(IsWithin(control.PlaceInside(), ClientArea(window)));
  CHECK(IsWithin(window.Control(IDOK).PlaceInside(), ClientArea(window)));
  char kind[8] = "";
  GetClassNameA(control.Handle(), kind, sizeof(kind));
  CHECK(std::string(kind) == (text.scrolls ? "Edit" : "Static"));
  if (text.scrolls) {
    CHECK(control.Send(EM_GETLINECOUNT) >= text.linesAtLeast);
    SCROLLBARINFO bar{};
    bar.cbSize = sizeof(bar);
    CHECK(GetScrollBarInfo(control.Handle(), static_cast<LONG>(OBJID_VSCROLL), &bar));
    CHECK((bar.rgstate[0] & (STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_OFFSCREEN | STATE_SYSTEM_UNAVAILABLE)) == 0);
  } else {
    CHECK(control.ClientSize().cy >= LineHeight(control) * (id == IDC_INPUT_PROMPT ? text.linesAtLeast : 1));
  }
}

} // namespace

TEST_CASE("the prompt of a question and of a list") {
  const ScriptBench bench;
  struct Case {
    const char* call;
    int prompt, value; // the controls
    WORD key;
    const char* answer;
  };
  const Case cases[] = {
      {R"(v = userinputdword("Calibration", s, 5, 1, 9);)", IDC_INPUT_PROMPT, IDC_INPUT_VALUE, '7', "7"},
      {R"(v = userlistinput("Calibration", s, "a" + chr(0) + "b", 0);)", IDC_LIST_PROMPT, IDC_LIST_ITEMS, VK_DOWN, "1"},
  };
  for (const Case& c : cases) {
    for (const LongText& text : kTexts) {
      CAPTURE(c.call);
      CAPTURE(std::string(text.name));
      bench.Start(text.Script(std::string(c.call) + R"(print(numtostr(v) + "\n");)"));
      const Window question = Window::WaitForTop(kCaption);
      CheckShownWhole(text, question, c.prompt);
      const RECT value = question.Control(c.value).PlaceInside();
      CHECK(value.top >= question.Control(c.prompt).PlaceInside().bottom);
      CHECK(question.Control(IDOK).PlaceInside().top >= value.bottom);
      question.Activate();
      question.Control(c.value).WaitForFocus(); // in the field the text is selected
      TypeKey(c.key);
      TypeKey(VK_RETURN);
      bench.WaitForLine(c.answer);
      bench.WaitForEnd();
    }
  }
}

TEST_CASE("a prompt that scrolls is the last stop of Tab, and passes on Enter and Escape") {
  const ScriptBench bench;
  const auto ask = [&] {
    bench.Start(kTexts[2].Script(R"(v = userinputdword("Calibration", s, 5, 1, 9, &i); print(numtostr(i) + "\n");)"));
    const Window question = Window::WaitForTop(kCaption);
    question.Activate();
    for (const int id : {IDC_INPUT_VALUE, IDOK, IDCANCEL}) {
      question.Control(id).WaitForFocus();
      TypeKey(VK_TAB);
    }
    const Window prompt = question.Control(IDC_INPUT_PROMPT);
    prompt.WaitForFocus();
    TypeKey(VK_NEXT);
    WaitFor("the prompt to scroll", [&] { return prompt.Send(EM_GETFIRSTVISIBLELINE) > 0; });
    return question;
  };
  SUBCASE("Tab leads on") {
    const Window question = ask();
    TypeKey(VK_TAB);
    question.Control(IDC_INPUT_VALUE).WaitForFocus();
    TypeKey(VK_ESCAPE);
    bench.WaitForLine("0");
  }
  SUBCASE("Enter") {
    ask();
    TypeKey(VK_RETURN);
    bench.WaitForLine("1");
  }
  SUBCASE("Escape") {
    ask();
    TypeKey(VK_ESCAPE);
    bench.WaitForLine("0");
  }
  bench.WaitForEnd();
}

TEST_CASE("a message") {
  const ScriptBench bench;
  for (const LongText& text : kTexts) {
    for (const WORD key : {WORD{VK_RETURN}, WORD{VK_ESCAPE}}) {
      CAPTURE(std::string(text.name));
      bench.Start(text.Script(R"(messagebox("Calibration", s); print("on\n");)"));
      const Window box = Window::WaitForTop(kCaption);
      CHECK(Unbroken(box.BoxText()) == Unbroken(text.Text()));
      CHECK(IsWithin(box.Place(), WorkArea()));
      CHECK(IsWithin(box.Control(0xFFFF).PlaceInside(), ClientArea(box)));
      if (text.scrolls)
        CheckShownWhole(text, box, 0xFFFF);
      box.Activate();
      box.Control(IDOK).WaitForFocus();
      TypeKey(key);
      bench.WaitForLine("on");
      bench.WaitForEnd();
    }
  }
}
