// Starts a program, waits until it has made a file, and tells it what Windows tells the programs of a console that is
// closed:  console_event FILE EVENT PROGRAM ARGUMENT…,  with EVENT as a number (CTRL_CLOSE_EVENT is 2). The exit code
// is the program's; 99 when it does not come to that.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <process.h>
#include <windows.h>

namespace {

constexpr DWORD kTimeout = 60000; // ms

bool WaitForFile(const char* path) {
  for (DWORD waited = 0; GetFileAttributesA(path) == INVALID_FILE_ATTRIBUTES; waited += 10) {
    if (waited > kTimeout)
      return false;
    Sleep(10);
  }
  return true;
}

// The system calls a program's handlers by starting this function, which every process has at the same address, in it.
bool Tell(HANDLE process, std::uintptr_t event) {
  const FARPROC routine = GetProcAddress(GetModuleHandleA("kernel32"), "CtrlRoutine");
  const auto start = reinterpret_cast<LPTHREAD_START_ROUTINE>(reinterpret_cast<void (*)()>(routine));
  const HANDLE thread =
      start ? CreateRemoteThread(process, nullptr, 0, start, reinterpret_cast<void*>(event), 0, nullptr) : nullptr;
  return thread && CloseHandle(thread) != FALSE;
}

} // namespace

int main(int argc, char** argv) {
  constexpr int kFailed = 99;
  if (argc < 4)
    return kFailed;
  const auto process = reinterpret_cast<HANDLE>(_spawnv(_P_NOWAIT, argv[3], argv + 3));
  DWORD code = kFailed;
  const bool ended = WaitForFile(argv[1]) && Tell(process, std::strtoul(argv[2], nullptr, 10)) &&
                     WaitForSingleObject(process, kTimeout) == WAIT_OBJECT_0 && GetExitCodeProcess(process, &code);
  if (!ended)
    std::fprintf(stderr, "console_event: %s could not be told\n", argv[3]);
  return static_cast<int>(code);
}
