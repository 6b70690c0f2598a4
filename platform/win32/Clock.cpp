#include "platform/Platform.h"

#include <windows.h>

namespace platform {

void Sleep(std::uint32_t milliseconds) {
  ::Sleep(milliseconds);
}

LocalTime Now() {
  SYSTEMTIME time;
  GetLocalTime(&time);
  return {time.wDay, time.wMonth, time.wYear, time.wHour, time.wMinute, time.wSecond};
}

} // namespace platform
