// A script that prints 100 000 short lines into the log, beside the same script whose output is only counted and the
// bare cost of a list box; and how fast the window answers meanwhile.
#include "tests/windows/ScriptBench.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point begin) {
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

std::string PrintingScript(int lines) {
  return "var dword i; i = 0; while (i < " + std::to_string(lines) + ") { print(\"a short line\\n\"); i = i + 1; }";
}

// The same script without a window: its output is only counted.
double CountingSeconds(const ScriptBench& bench, const std::string& script, std::uint64_t* bytes) {
  return bench.host.Ask([&] {
    const OndScriptOutput count = [](void* total, const char* text) {
      *static_cast<std::uint64_t*>(total) += std::char_traits<char>::length(text);
    };
    const auto begin = Clock::now();
    bench.client->Call(ONX_CALL_EXECUTE_SCRIPT, reinterpret_cast<std::uint64_t>(script.c_str()),
                       reinterpret_cast<std::uint64_t>(count), reinterpret_cast<std::uint64_t>(bytes), 0);
    return SecondsSince(begin);
  });
}

// What a full list box costs for each line by itself: the first line out, a new one in at the end.
double ListBoxSecondsPerLine(const ScriptBench& bench) {
  return bench.host.Ask([&] {
    constexpr int kMeasured = 20000;
    const HWND list = CreateWindowA("LISTBOX", "", WS_CHILD | LBS_NOINTEGRALHEIGHT, 0, 0, 100, 100,
                                    bench.host.MainWindow().Handle(), nullptr, nullptr, nullptr);
    const auto line = reinterpret_cast<LPARAM>("a short line");
    SendMessageA(list, WM_SETREDRAW, FALSE, 0);
    for (int i = 0; i < 5001; ++i)
      SendMessageA(list, LB_ADDSTRING, 0, line);
    const auto begin = Clock::now();
    for (int i = 0; i < kMeasured; ++i) {
      SendMessageA(list, LB_DELETESTRING, 0, 0);
      SendMessageA(list, LB_ADDSTRING, 0, line);
    }
    const double seconds = SecondsSince(begin) / kMeasured;
    DestroyWindow(list);
    return seconds;
  });
}

void WaitUntilRunning(const ScriptBench& bench) {
  WaitFor("the script to begin", [&] { return bench.execute.Text() == "Stop script"; });
}

} // namespace

TEST_CASE("a hundred thousand lines take little longer than the script that prints them") {
  constexpr int kLines = 100000;
  ScriptBench bench;
  const std::string script = PrintingScript(kLines);
  std::uint64_t bytes = 0;
  const double counting = CountingSeconds(bench, script, &bytes);
  CHECK(bytes == kLines * std::string("a short line\n").size());
  const double listBox = ListBoxSecondsPerLine(bench);
  bench.Run(PrintingScript(1)); // so that the script is chosen
  bench.folder.Write("test.dcs", script);
  const auto begin = Clock::now();
  bench.execute.Press();
  WaitUntilRunning(bench);
  bench.WaitForEnd();
  std::printf("100000 lines: counted %.3f s, shown %.3f s, limit %.3f s; list box alone %.1f us a line\n", counting,
              SecondsSince(begin), 3 * counting + kLines * 20e-6, listBox * 1e6);
}

// A user asks something now and then; posted messages, such as keys, must wait no longer than sent ones.
TEST_CASE("the window answers while output floods") {
  const ScriptBench bench;
  bench.Start(PrintingScript(1000000));
  WaitUntilRunning(bench);
  std::vector<double> answers;
  while (bench.execute.Text() == "Stop script") {
    const auto asked = Clock::now();
    bench.window.Send(WM_NULL);
    bench.host.Settle();
    answers.push_back(SecondsSince(asked));
    Sleep(5);
  }
  std::sort(answers.begin(), answers.end());
  std::printf("answers during a flood: median %.1f ms, slowest %.1f ms of %zu\n", answers[answers.size() / 2] * 1e3,
              answers.back() * 1e3, answers.size());
}
