// The Terminal's window: what is typed, and the keys that work in it.
#include "tests/windows/TerminalWindow.h"

#include <doctest/doctest.h>

#include <utility>

TEST_CASE("a typed line goes out with its escapes decoded, and the status line says so") {
  TerminalWindow terminal;
  std::string upperHalf; // every byte that a key can give beyond ASCII
  for (int byte = 0xA0; byte <= 0xFF; ++byte)
    upperHalf += static_cast<char>(byte);
  struct Case {
    std::string typed;
    bool appendCr;
    std::string sent;
    std::string status;
  };
  const Case cases[] = {
      {"ver", true, "ver\r", "Wrote \"ver\\r\" to device."},
      {"ver", false, "ver", "Wrote \"ver\" to device."},
      {"", true, "\r", "Wrote \"\\r\" to device."},
      {R"(a\t\(xFF)\e\\)", true, "a\t\xFF\x0E\\\r", R"(Wrote "a\t\(xFF)\e\\\r" to device.)"},
      {R"(ab\0cd)", true, "ab\r", R"(Wrote "ab\0cd\r" to device.)"},
      {R"(\q)", true, "", R"(Invalid ESC sequence "\q".)"},
      {"100 % & more %s", false, "100 % & more %s", "Wrote \"100 % & more %s\" to device."},
      {upperHalf, false, upperHalf, "Wrote \"" + upperHalf + "\" to device."},
      {std::string(20000, 'x'), true, std::string(20000, 'x') + "\r",
       "Wrote \"" + std::string(20000, 'x') + "\\r\" to device."},
  };
  for (const Case& c : cases) {
    CAPTURE(c.typed);
    terminal.SetAppendCr(c.appendCr);
    terminal.Send(c.typed);
    CHECK(terminal.Status() == c.status);
    const bool sent = c.status.starts_with("Wrote");
    CHECK(terminal.TakeSent() == (sent ? "Transmit " + c.sent : ""));
    CHECK(terminal.Input().Text() == (sent ? "" : c.typed));
  }
}

TEST_CASE("every character of the code page can be typed") {
  const TerminalWindow terminal;
  terminal.Input().Focus();
  for (const wchar_t character : {L'a', L'\u00E4', L'\u20AC', L'\u2013'})
    TypeCharacter(character);
  WaitFor("what was typed", [&] { return terminal.Input().Text() == "a\xE4\x80\x96"; });
}

TEST_CASE("a line that cannot go out stays in the input line") {
  TerminalWindow terminal;
  SUBCASE("no channel") {
    terminal.client.Connect(nullptr);
    terminal.Send("ver");
    CHECK(terminal.Status() == "Not connected to communication device!");
  }
  SUBCASE("a channel that somebody else holds") {
    int other = 0;
    REQUIRE(terminal.channel.Lock(&other, 0) == 0);
    terminal.channel.ForgetCalls();
    terminal.Send("ver");
    CHECK(terminal.Status() == "Communication device is locked!");
    CHECK(Joined(terminal.channel.Calls()) == "Lock 500");
    terminal.channel.Unlock(&other);
  }
  SUBCASE("a channel that fails") {
    terminal.channel.Fail("Transmit", {-7});
    terminal.Send("ver");
    CHECK(terminal.Status() == "Error: error -7");
    CHECK(terminal.TakeSent() == "Transmit ver\r");
  }
  CHECK(terminal.Input().Text() == "ver");
  CHECK(terminal.host.Ask([&] { return terminal.channel.LockDepth(); }) == 0); // between two polls
}

TEST_CASE("Up and Down go through the lines that were sent") {
  TerminalWindow terminal;
  // What the key makes of the input line "?", and an x typed behind it, which shows where the caret is.
  const auto press = [&](WORD key) {
    terminal.Input().SetText("?");
    TypeKey(key);
    TypeText("x");
    WaitFor("the x behind the key", [&] { return terminal.Input().Text().find('x') != std::string::npos; });
    return terminal.Input().Text();
  };
  terminal.Input().Focus();
  CHECK(press(VK_UP) == "x?");
  CHECK(press(VK_DOWN) == "?x"); // the edit control's own

  terminal.Send("one");
  terminal.SetAppendCr(false);
  terminal.Send("t\\q"); // stored, though it did not go out
  CHECK(press(VK_UP) == "t\\qx");
  CHECK(press(VK_UP) == "onex");
  CHECK(press(VK_DOWN) == "t\\qx");
  CHECK_FALSE(terminal.Control(IDC_TERMINAL_APPEND_CR).Checked()); // left alone
  CHECK(press(VK_HOME) == "x?");                                   // no key of the history
}

TEST_CASE("the focus starts in the input line and goes around by Tab") {
  TerminalWindow terminal;
  terminal.window.Activate();
  terminal.Input().WaitForFocus();
  for (const int id : {IDC_TERMINAL_APPEND_CR, IDC_TERMINAL_CLEAR, IDC_TERMINAL_COPY, static_cast<int>(IDOK),
                       IDC_TERMINAL_ANSWERS, IDC_TERMINAL_INPUT}) {
    TypeKey(VK_TAB);
    terminal.Control(id).WaitForFocus();
  }
  terminal.Control(IDC_TERMINAL_COPY).Focus();
  terminal.client.Show("Terminal");
  terminal.Input().WaitForFocus();
}

TEST_CASE("Enter and Escape depend on where the focus is") {
  TerminalWindow terminal;
  terminal.Receive({"a\r"});
  terminal.Input().SetText("typed");
  const auto type = [&](int focus, WORD key) {
    terminal.Control(focus).Focus();
    TypeKey(key);
  };

  for (const auto& [id, next] :
       {std::pair(IDC_TERMINAL_ANSWERS, IDC_TERMINAL_INPUT), std::pair(IDC_TERMINAL_APPEND_CR, IDC_TERMINAL_CLEAR)}) {
    type(id, VK_RETURN);
    TypeKey(VK_TAB); // keys come one after the other: when this one has come, so has Enter
    terminal.Control(next).WaitForFocus();
  }
  CHECK(terminal.TakeSent().empty());
  CHECK(terminal.window.Visible());
  CHECK(terminal.Input().Text() == "typed");
  CHECK(terminal.Control(IDC_TERMINAL_APPEND_CR).Checked());

  // A push button with the focus is pressed, also when the focus came by a click.
  terminal.host.Do([&] { SetFocus(terminal.Control(IDC_TERMINAL_CLEAR).Handle()); });
  TypeKey(VK_RETURN);
  WaitFor("Enter on \"Clear\" to clear", [&] { return terminal.AnswerCount() == 0; });
  CHECK(terminal.window.Visible());

  type(IDC_TERMINAL_INPUT, VK_ESCAPE);
  WaitFor("Escape to empty the input line", [&] { return terminal.Input().Text().empty(); });
  CHECK(terminal.window.Visible());

  SUBCASE("Enter on Close") {
    type(IDOK, VK_RETURN);
  }
  SUBCASE("a click on Close") {
    terminal.Input().Focus();
    terminal.window.PressControl(IDOK);
  }
  SUBCASE("Escape outside of the input line") {
    type(IDC_TERMINAL_COPY, VK_ESCAPE);
  }
  terminal.window.WaitUntilGone("the Terminal's window");
  CHECK(terminal.TakeSent().empty());
}
