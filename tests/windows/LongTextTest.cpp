// Texts of any length in questions and messages: they are shown whole, within the screen, and the keyboard works on.
#include "tests/windows/ScriptBench.h"

namespace {

constexpr const char* kCaption = "Calibration";
constexpr int kMessageText = 0xFFFF; // the control

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

int LineHeight(const Window& control) {
  const HDC context = GetDC(control.Handle());
  const HGDIOBJ before = SelectObject(context, reinterpret_cast<HGDIOBJ>(control.Send(WM_GETFONT)));
  TEXTMETRICA metrics{};
  GetTextMetricsA(context, &metrics);
  SelectObject(context, before);
  ReleaseDC(control.Handle(), context);
  return metrics.tmHeight;
}

// A question's prompt; a message's text where it scrolls, which otherwise is the system's own.
void CheckShownWhole(const LongText& text, const Window& window, int id) {
  const Window control = window.Control(id);
  CHECK(Unbroken(control.Text()) == Unbroken(text.Text()));
  for (const Window& part : {window, control, window.Control(IDOK)})
    CHECK(part.IsWhole());
  if (id == kMessageText && !text.scrolls)
    return;
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

TEST_CASE("the prompt of a question and of a list, and a message") {
  const ScriptBench bench;
  struct Case {
    const char* call;
    int text, value; // the controls
    std::vector<WORD> keys;
    const char* answer;
  };
  const Case cases[] = {
      {R"(v = userinputdword("Calibration", s, 5, 1, 9);)", IDC_INPUT_PROMPT, IDC_INPUT_VALUE, {'7', VK_RETURN}, "7"},
      {R"(v = userlistinput("Calibration", s, "a" + chr(0) + "b", 0);)",
       IDC_LIST_PROMPT,
       IDC_LIST_ITEMS,
       {VK_DOWN, VK_RETURN},
       "1"},
      {R"(messagebox("Calibration", s);)", kMessageText, IDOK, {VK_RETURN}, "0"},
      {R"(messagebox("Calibration", s);)", kMessageText, IDOK, {VK_ESCAPE}, "0"},
  };
  for (const Case& c : cases) {
    for (const LongText& text : kTexts) {
      CAPTURE(c.call);
      CAPTURE(std::string(text.name));
      bench.Start(text.Script(std::string(c.call) + R"(print(numtostr(v) + "\n");)"));
      const Window question = Window::WaitForTop(kCaption);
      CheckShownWhole(text, question, c.text);
      const RECT value = question.Control(c.value).PlaceInside();
      CHECK(value.top >= question.Control(c.text).PlaceInside().bottom);
      CHECK((c.value == IDOK || question.Control(IDOK).PlaceInside().top >= value.bottom));
      question.Activate();
      question.Control(c.value).WaitForFocus(); // in the field the text is selected
      for (const WORD key : c.keys)
        TypeKey(key);
      bench.WaitForLine(c.answer);
      bench.WaitForEnd();
    }
  }
}
