#include "Runtime.h"

extern "C" {
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

namespace {

std::int64_t checks = 0;
std::int64_t failures = 0;

std::size_t Length(const char* text) {
  std::size_t length = 0;
  while (text[length] != 0)
    ++length;
  return length;
}

} // namespace

void Print(const char* text) {
  constexpr unsigned kStandardOutput = static_cast<unsigned>(-11);
  unsigned written = 0;
  WriteFile(GetStdHandle(kStandardOutput), text, static_cast<unsigned>(Length(text)), &written, nullptr);
}

void Print(std::int64_t number) {
  char digits[24];
  char* first = digits + sizeof digits - 1;
  *first = 0;
  std::uint64_t rest = number < 0 ? 0 - static_cast<std::uint64_t>(number) : static_cast<std::uint64_t>(number);
  do {
    *--first = static_cast<char>('0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  if (number < 0)
    *--first = '-';
  Print(first);
}

bool Same(const char* a, const char* b) {
  while (*a != 0 && *a == *b) {
    ++a;
    ++b;
  }
  return *a == *b;
}

bool Contains(const char* text, const char* part) {
  const std::size_t length = Length(part);
  for (; *text != 0; ++text) {
    std::size_t i = 0;
    while (i < length && text[i] == part[i])
      ++i;
    if (i == length)
      return true;
  }
  return length == 0;
}

void Check(bool holds, const char* what) {
  ++checks;
  if (holds)
    return;
  ++failures;
  Print("FAILED: ");
  Print(what);
  Print("\n");
}

extern "C" [[noreturn]] void Start() {
  Run();
  if (failures == 0) {
    Print("all checks hold\n");
    ExitProcess(0);
  }
  Print(failures);
  Print(" of ");
  Print(checks);
  Print(" checks failed\n");
  ExitProcess(1);
}
