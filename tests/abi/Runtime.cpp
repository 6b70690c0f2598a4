#include "Runtime.h"

extern "C" {
__declspec(dllimport) int lstrlenA(const char* text);
__declspec(dllimport) void* GetStdHandle(unsigned which);
__declspec(dllimport) int WriteFile(void* file, const void* bytes, unsigned size, unsigned* written, void* overlapped);
[[noreturn]] __declspec(dllimport) void ExitProcess(unsigned code);

// The compiler calls these without being asked to.
int _fltused = 0;

void* memcpy(void* to, const void* from, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i)
    static_cast<volatile char*>(to)[i] = static_cast<const char*>(from)[i];
  return to;
}

void* memset(void* to, int value, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i)
    static_cast<volatile char*>(to)[i] = static_cast<char>(value);
  return to;
}

// What an abstract operation's slot holds.
int _purecall() {
  Print("FAILED: an abstract operation was called\n");
  ExitProcess(3);
}
}

static bool failed = false;

void Print(const char* text) {
  constexpr unsigned kStandardOutput = static_cast<unsigned>(-11);
  unsigned written = 0;
  WriteFile(GetStdHandle(kStandardOutput), text, static_cast<unsigned>(lstrlenA(text)), &written, nullptr);
}

bool Same(const char* a, const char* b) {
  while (*a != 0 && *a == *b) {
    ++a;
    ++b;
  }
  return *a == *b;
}

void Check(bool holds, const char* what) {
  if (holds)
    return;
  failed = true;
  Print("FAILED: ");
  Print(what);
  Print("\n");
}

extern "C" [[noreturn]] void Start() {
  Run();
  if (!failed)
    Print("all checks hold\n");
  ExitProcess(failed ? 1 : 0);
}
