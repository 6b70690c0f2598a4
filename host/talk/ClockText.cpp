#include "host/talk/ClockText.h"

#include <chrono>
#include <cstdio>
#include <ctime>

namespace host {
namespace {

std::string Text(const char* form) {
  using namespace std::chrono;
  const auto now = system_clock::now();
  const std::time_t seconds = system_clock::to_time_t(now);
  const auto milliseconds = duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
  const std::tm* const local = std::localtime(&seconds);
  char text[40] = "";
  if (local)
    std::strftime(text, sizeof text, form, local);
  char fraction[8];
  std::snprintf(fraction, sizeof fraction, ".%03d", static_cast<int>(milliseconds));
  return std::string(text) + fraction;
}

} // namespace

std::string ClockText() {
  return Text("%H:%M:%S");
}

std::string DateText() {
  return Text("%Y-%m-%d %H:%M:%S");
}

} // namespace host
