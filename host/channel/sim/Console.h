// What talks at the device's end of a simulated device's line.
#pragma once

#include <chrono>
#include <cstddef>
#include <string_view>

namespace host {

// Time is what the caller says it is, and only goes forward: nothing here waits. [one thread at a time]
class Console {
public:
  using Time = std::chrono::steady_clock::time_point;

  Console() = default;
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  virtual ~Console() = default;

  // Bytes that reach the device.
  virtual void Write(Time now, std::string_view bytes) = 0;
  // Takes up to `capacity` bytes that the device has said until now; returns their number.
  virtual std::size_t Read(Time now, char* buffer, std::size_t capacity) = 0;
};

} // namespace host
