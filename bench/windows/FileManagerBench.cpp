// The File Manager under load: a job of 10 000 files from loading to saving, a directory of 256 files, and what a copy
// takes beyond the channel's own time, beside the same transfers asked for directly.
#include "bench/IdleChannel.h"
#include "bench/SideBySide.h"
#include "res/resource.h"

#include <windows.h>

#include <commctrl.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int kRows = 10000;
constexpr std::uint32_t kDirectory = 256;
constexpr int kRounds = 5;

// Takes its time for each step of a transfer, as a serial link does.
class SlowChannel : public IdleChannel {
public:
  std::uint32_t filesOnDevice = 0;
  DWORD stepMs = 0;
  int transfers = 0;

  std::int32_t TransmitFile(const char*, std::uint8_t, std::uint8_t, std::uint32_t, TransferProgressCallback callback,
                            void* context, std::uint32_t, std::uint32_t steps) override {
    ++transfers;
    for (std::uint32_t step = 0; step <= steps; ++step) {
      if (stepMs != 0)
        Sleep(stepMs);
      callback(context, step);
    }
    return 0;
  }
  std::uint64_t GetDirectoryEntryCount() override { return filesOnDevice; }
  std::int32_t GetDirectoryEntry(std::uint32_t index, TDEVDIRENTRY* entry) override {
    *entry = {static_cast<std::uint8_t>(index), 1, index * 1000};
    return 0;
  }
  std::int32_t GetDirectoryInfo(TDEVDIRINFO* info) override {
    *info = {};
    return 0;
  }
};

// --- a user at the windows, on a thread of its own

HWND WaitForWindow(const char* caption) {
  HWND window = nullptr;
  while (!(window = FindWindowA(nullptr, caption)) || !IsWindowVisible(window))
    Sleep(1);
  return window;
}

BOOL CALLBACK FindEdit(HWND child, LPARAM found) {
  char kind[16] = "";
  GetClassNameA(child, kind, sizeof(kind));
  if (std::strcmp(kind, "Edit") != 0 || !IsWindowVisible(child))
    return TRUE;
  *reinterpret_cast<HWND*>(found) = child;
  return FALSE;
}

// Presses a button of `window`; what it opens is answered by `user` meanwhile. Milliseconds, drawing included.
template <typename User>
double MillisecondsOfPress(HWND window, int button, User user) {
  std::thread answering(user);
  const double time = MillisecondsOf([&] {
    SendMessageA(window, WM_COMMAND, static_cast<WPARAM>(button), 0);
    UpdateWindow(window);
  });
  answering.join();
  return time;
}

double MillisecondsOfPress(HWND window, int button) {
  return MillisecondsOfPress(window, button, [] {});
}

double MillisecondsOfChoice(HWND window, int button, const char* caption, const std::string& path) {
  return MillisecondsOfPress(window, button, [=] {
    const HWND dialog = WaitForWindow(caption);
    HWND edit = nullptr;
    while (!edit) {
      EnumChildWindows(dialog, FindEdit, reinterpret_cast<LPARAM>(&edit));
      Sleep(1);
    }
    SendMessageA(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
    PostMessageA(dialog, WM_COMMAND, IDOK, 0);
  });
}

void Select(HWND list, int row) {
  LVITEMA item{};
  item.state = item.stateMask = LVIS_SELECTED;
  SendMessageA(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

// One file's properties are opened and confirmed, then a hundred rows are removed.
double MillisecondsOfEditing(HWND list) {
  Select(list, kRows / 2);
  std::thread user([] {
    const HWND dialog = WaitForWindow("File properties");
    SendMessageA(GetDlgItem(dialog, IDC_PROPERTIES_FILE_ID), WM_SETTEXT, 0, reinterpret_cast<LPARAM>("99"));
    PostMessageA(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
  });
  double time = MillisecondsOf([=] { SendMessageA(list, WM_KEYDOWN, VK_SPACE, 0); });
  user.join();
  for (int row = 0; row < 100; ++row)
    Select(list, row * 50);
  time += MillisecondsOf([=] {
    SendMessageA(list, WM_KEYDOWN, VK_DELETE, 0);
    UpdateWindow(list);
  });
  return time;
}

std::size_t LinesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

bool MeasureJob(HWND window) {
  const std::string folder = (std::filesystem::temp_directory_path() / "ond-bench").string();
  std::filesystem::create_directory(folder);
  const std::string job = folder + "\\job.dcj", saved = folder + "\\saved.dcj";
  std::ofstream file(job, std::ios::binary);
  for (int i = 0; i < kRows; ++i)
    file << "files\\number " << i << ".bin\t" << i % 256 << "\t1\tnormal\n";
  file.close();
  const HWND list = GetDlgItem(window, IDC_FM_LOCAL_LIST);
  const double loading = MillisecondsOfChoice(window, IDC_FM_LOAD_JOB, "Open job file", job);
  const bool loaded = SendMessageA(list, LVM_GETITEMCOUNT, 0, 0) == kRows;
  const double editing = MillisecondsOfEditing(list);
  const double saving = MillisecondsOfChoice(window, IDC_FM_SAVE_JOB, "Save list file", saved);
  const bool sound = loaded && LinesOf(saved) == kRows - 101;
  std::filesystem::remove_all(folder);
  std::printf("%-36s %9.0f ms\n%-36s %9.0f ms\n%-36s %9.0f ms\n", "load a job of 10000 files, its dialog too", loading,
              "edit: one file, remove 101", editing, "save the job, its dialog too", saving);
  return sound;
}

bool MeasureRefresh(HWND window, SlowChannel& channel) {
  channel.filesOnDevice = kDirectory;
  double best = 1e300;
  for (int round = 0; round < kRounds; ++round)
    best = std::min(best, MillisecondsOfPress(window, IDC_FM_REFRESH));
  const bool sound = SendMessageA(GetDlgItem(window, IDC_FM_DEVICE_LIST), LVM_GETITEMCOUNT, 0, 0) == kDirectory;
  channel.filesOnDevice = 0;
  std::printf("%-36s %9.1f ms\n", "refresh a directory of 256 files", best);
  return sound;
}

std::int32_t GoOn(void*, std::uint32_t) {
  return 0;
}

// `files` rows are in the list.
bool MeasureCopy(HWND window, SlowChannel& channel, int files, DWORD stepMs, const char* name) {
  channel.stepMs = stepMs;
  channel.transfers = 0;
  const SideBySide best = MeasureSideBySide(
      kRounds, [&] { MillisecondsOfPress(window, IDC_FM_COPY_ALL); },
      [&] {
        for (int i = 0; i < files; ++i)
          channel.TransmitFile("", 0, 0, 0, GoOn, nullptr, 1, 100);
      });
  Print(name, "the same transfers alone", best);
  if (stepMs != 0)
    std::printf("%-36s %9.1f %%\n", "overhead", 100 * (best.first / best.second - 1));
  return channel.transfers == 2 * kRounds * files;
}

void KeepRows(HWND list, int count) {
  SendMessageA(list, WM_SETREDRAW, FALSE, 0);
  while (SendMessageA(list, LVM_GETITEMCOUNT, 0, 0) > count)
    SendMessageA(list, LVM_DELETEITEM, static_cast<WPARAM>(count), 0);
  SendMessageA(list, WM_SETREDRAW, TRUE, 0);
}

} // namespace

int main() {
  SlowChannel channel;
  CONXDeviceClient_0* const client = OndDeviceClientCreateInstance(ONX_OBJ_FILE_MANAGER);
  client->Connect(&channel);
  client->ShowDialogNonModal(nullptr);
  const HWND window = FindWindowA(nullptr, "File manager");
  bool sound = MeasureJob(window);
  sound = MeasureRefresh(window, channel) && sound;
  const HWND list = GetDlgItem(window, IDC_FM_LOCAL_LIST);
  KeepRows(list, 1000);
  sound = MeasureCopy(window, channel, 1000, 0, "copy 1000 files, no time on the link") && sound;
  KeepRows(list, 20);
  sound = MeasureCopy(window, channel, 20, 1, "copy 20 files, 1 ms for each step") && sound;
  OndDeviceClientDeleteInstance(client);
  if (!sound)
    std::fprintf(stderr, "the lists or the files are not what they should be\n");
  return sound ? 0 : 1;
}
