#include "platform/Platform.h"

#include <chrono>
#include <ctime>
#include <thread>

namespace platform {

void Sleep(std::uint32_t milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

LocalTime Now() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  localtime_r(&now, &parts);
  const auto number = [](int value) { return static_cast<unsigned>(value); };
  return {number(parts.tm_mday), number(parts.tm_mon + 1), number(parts.tm_year + 1900),
          number(parts.tm_hour), number(parts.tm_min),     number(parts.tm_sec)};
}

} // namespace platform
