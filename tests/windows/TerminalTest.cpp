// The Terminal's window where a text of steps cannot show it.
#include "tests/windows/TerminalWindow.h"

#include <doctest/doctest.h>

namespace {

using Lines = std::vector<std::string>;

std::string Numbered(int from, int to) {
  std::string text;
  for (int i = from; i < to; ++i)
    text += "line " + std::to_string(i) + "\r\n";
  return text;
}

} // namespace

TEST_CASE("a typed line goes out, of whatever bytes and length") {
  TerminalWindow terminal;
  std::string upperHalf; // every byte that a key can give beyond ASCII
  for (int byte = 0xA0; byte <= 0xFF; ++byte)
    upperHalf += static_cast<char>(byte);
  for (const std::string& typed : {upperHalf, std::string(20000, 'x')}) {
    terminal.Send(typed);
    CHECK(terminal.Status() == "Wrote \"" + typed + "\\r\" to device.");
    CHECK(Joined(terminal.channel.Calls("Transmit ")) == "Transmit " + typed + "\r");
    terminal.channel.ForgetCalls();
  }
}

TEST_CASE("every character of the code page can be typed") {
  const TerminalWindow terminal;
  terminal.Input().Focus();
  for (const wchar_t character : {L'a', L'\u00E4', L'\u20AC', L'\u2013'})
    TypeCharacter(character);
  WaitFor("what was typed", [&] { return terminal.Input().Text() == "a\xE4\x80\x96"; });
}

TEST_CASE("answers of every byte become lines") {
  std::string bytes;
  for (int byte = 1; byte < 256; ++byte)
    if (byte != '\r' && byte != '\n')
      bytes += static_cast<char>(byte);
  TerminalWindow terminal;
  terminal.Receive({bytes + "\r", "next", "\r", "\n", std::string(1023, 'x'), "y\r"});
  CHECK(terminal.Answers() == Lines{bytes, "next", std::string(1023, 'x') + "y"});
}

TEST_CASE("what one poll leaves of a slow channel does not wait for the next") {
  TerminalWindow terminal;
  terminal.host.Do([&] { KillTimer(terminal.window.Handle(), 1); });
  terminal.channel.delay = std::chrono::milliseconds(10);
  terminal.channel.Answer({std::string(20000, 'x') + "\r"});
  terminal.Poll();
  CHECK_FALSE(terminal.channel.AllTaken());
  WaitFor("the whole answer", [&] { return terminal.Answers() == Lines{std::string(20000, 'x')}; });
}

TEST_CASE("the longest line can be scrolled to its end") {
  constexpr std::size_t kMiB = 1 << 20;
  TerminalWindow terminal;
  terminal.Receive({std::string(kMiB / 2, 'x'), std::string(kMiB / 2, 'x'), "more"});
  REQUIRE(terminal.Answers() == Lines{std::string(kMiB, 'x'), "more"});
  CHECK(terminal.Control(IDC_TERMINAL_ANSWERS).Send(LB_GETHORIZONTALEXTENT) >= static_cast<LRESULT>(kMiB));
}

TEST_CASE("the list holds the last 5001 lines, scrolled to the end") {
  TerminalWindow terminal;
  const Window list = terminal.Control(IDC_TERMINAL_ANSWERS);
  const auto checkList = [&](int firstLine, const std::string& last) {
    const Lines lines = terminal.Answers();
    REQUIRE(lines.size() == 5001);
    CHECK(lines.front() == "line " + std::to_string(firstLine));
    CHECK(lines.back() == last);
    RECT lastItem{};
    CHECK(list.Send(LB_GETITEMRECT, 5000, reinterpret_cast<LPARAM>(&lastItem)) != LB_ERR);
    CHECK(lastItem.top >= 0);
    CHECK(lastItem.top < list.ClientSize().cy);
  };
  terminal.Receive({"first\r\n" + Numbered(0, 5000)});
  CHECK(terminal.Answers().front() == "first");
  terminal.Receive({"unfinished"});
  checkList(0, "unfinished");
  terminal.Receive({" business\r\n"});
  checkList(0, "unfinished business");
  terminal.Receive({"a", "b\r\n" + Numbered(5000, 5010)});
  checkList(11, "line 5009");
  terminal.Receive({"gone", " by now\r\n" + Numbered(6000, 30000) + "unfinished"});
  checkList(25000, "unfinished");
}

TEST_CASE("a device that never stops does not keep the window") {
  TerminalWindow terminal;
  terminal.host.Do([&] { terminal.channel.endless = true; });
  WaitFor("a full list", [&] { return terminal.AnswerCount() == 5001; });
  terminal.Send("stop");
  CHECK(terminal.Status() == "Wrote \"stop\\r\" to device.");
  terminal.Control(IDC_TERMINAL_COPY).Focus();
  TypeKey(VK_ESCAPE);
  terminal.window.WaitUntilGone("the Terminal's window");
}
