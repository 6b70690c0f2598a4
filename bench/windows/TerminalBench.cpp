// 1 MiB of answers in one burst, on the screen, beside a bare list box that is filled with the same last 5001 lines.
// And how long one poll of a device that never stops keeps the window.
#include "bench/IdleChannel.h"
#include "bench/SideBySide.h"
#include "res/resource.h"

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kBurst = 1 << 20;
constexpr std::size_t kShown = 5001;
constexpr int kRounds = 10;

// A device that has said everything already.
class BurstChannel : public IdleChannel {
public:
  std::string_view waiting;
  std::string_view endless; // when nothing waits: this, again and again

  std::int32_t Receive(char* buffer, std::uint32_t bufferSize, std::uint64_t* received) override {
    if (waiting.empty())
      waiting = endless;
    *received = waiting.copy(buffer, bufferSize);
    waiting.remove_prefix(*received);
    return 0;
  }
};

// Lines of a length that differs a little, as a device's are.
std::string MakeBurst() {
  std::string burst;
  for (int i = 0; burst.size() < kBurst; ++i)
    burst += "line " + std::to_string(i) + ' ' + std::string(static_cast<std::size_t>(40 + i % 50), 'x') + "\r\n";
  return burst;
}

std::vector<std::string> LastLines(std::string_view burst) {
  std::vector<std::string> lines;
  for (std::size_t end; (end = burst.find("\r\n")) != std::string_view::npos; burst.remove_prefix(end + 2))
    lines.emplace_back(burst.substr(0, end));
  lines.erase(lines.begin(), lines.end() - kShown);
  return lines;
}

std::vector<std::string> ItemsOf(HWND list) {
  std::vector<std::string> items(static_cast<std::size_t>(SendMessageA(list, LB_GETCOUNT, 0, 0)));
  for (std::size_t i = 0; i < items.size(); ++i) {
    items[i].resize(static_cast<std::size_t>(SendMessageA(list, LB_GETTEXTLEN, i, 0)));
    SendMessageA(list, LB_GETTEXT, i, reinterpret_cast<LPARAM>(items[i].data()));
  }
  return items;
}

// As large as the Terminal's own.
HWND MakeBareList(HWND model) {
  RECT place{};
  GetWindowRect(model, &place);
  const HWND frame = CreateWindowA("STATIC", "bare", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 700, 0, 640, 480, nullptr,
                                   nullptr, nullptr, nullptr);
  const HWND list = CreateWindowA("LISTBOX", "", static_cast<DWORD>(GetWindowLongPtrA(model, GWL_STYLE)), 0, 0,
                                  place.right - place.left, place.bottom - place.top, frame, nullptr, nullptr, nullptr);
  SendMessageA(list, WM_SETFONT, static_cast<WPARAM>(SendMessageA(model, WM_GETFONT, 0, 0)), FALSE);
  return list;
}

void Fill(HWND list, const std::vector<std::string>& lines) {
  SendMessageA(list, WM_SETREDRAW, FALSE, 0);
  SendMessageA(list, LB_RESETCONTENT, 0, 0);
  for (const std::string& line : lines)
    SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
  SendMessageA(list, LB_SETTOPINDEX, lines.size() - 1, 0);
  SendMessageA(list, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(list, nullptr, TRUE);
  UpdateWindow(list);
}

// What the timer does, and the drawing behind it.
double MillisecondsOfPoll(HWND terminal, HWND list) {
  return MillisecondsOf([=] {
    SendMessageA(terminal, WM_TIMER, 1, 0);
    UpdateWindow(list);
  });
}

double LongestPoll(HWND terminal, HWND list) {
  double longest = 0;
  for (int i = 0; i < kRounds; ++i)
    longest = std::max(longest, MillisecondsOfPoll(terminal, list));
  return longest;
}

} // namespace

int main() {
  BurstChannel channel;
  CONXDeviceClient_0* const client = OndDeviceClientCreateInstance(ONX_OBJ_TERMINAL);
  client->Connect(&channel);
  const bool shown = client->ShowDialogNonModal(nullptr) == EONX_ERR_NONE;
  const HWND terminal = FindWindowA(nullptr, "Terminal");
  if (!shown || !terminal) {
    std::fprintf(stderr, "no Terminal on the screen; is there a display?\n");
    return 1;
  }
  const HWND list = GetDlgItem(terminal, IDC_TERMINAL_ANSWERS);
  const HWND bare = MakeBareList(list);

  const std::string burst = MakeBurst();
  const std::vector<std::string> lastLines = LastLines(burst);
  int polls = 0;
  const SideBySide best = MeasureSideBySide(
      kRounds,
      [&] {
        channel.waiting = burst;
        for (polls = 0; !channel.waiting.empty(); ++polls)
          MillisecondsOfPoll(terminal, list);
      },
      [&] { Fill(bare, lastLines); });
  const bool sound = ItemsOf(list) == lastLines && ItemsOf(bare) == lastLines;

  channel.endless = burst;
  const double longestOfLines = LongestPoll(terminal, list);
  const std::string noEnd(kBurst, 'x');
  channel.endless = noEnd;
  const double longestWithoutEnd = LongestPoll(terminal, list);
  OndDeviceClientDeleteInstance(client);
  if (!sound) {
    std::fprintf(stderr, "the lists do not hold the last lines\n");
    return 1;
  }
  Print("burst of 1 MiB, on the screen", "bare list box, its last 5001 lines", best);
  std::printf("%-36s %9d\n", "polls for it, 200 ms apart", polls);
  std::printf("%-36s %9.1f ms\n", "longest poll, lines without pause", longestOfLines);
  std::printf("%-36s %9.1f ms\n", "longest poll, one line without end", longestWithoutEnd);
  return 0;
}
