// Owns a handle of the system's.
#pragma once

#include <utility>
#include <windows.h>

namespace host {

// An open handle of a file, an event and the like, or nothing. Borrowed handles are plain `HANDLE`s.
class Handle {
public:
  // Both null and INVALID_HANDLE_VALUE, as the system's functions say that they failed, are nothing.
  explicit Handle(HANDLE handle = nullptr) : m_handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  ~Handle() {
    if (IsOpen())
      CloseHandle(m_handle);
  }
  Handle(Handle&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(m_handle, other.m_handle);
    return *this;
  }

  HANDLE Get() const { return m_handle; }
  bool IsOpen() const { return m_handle != nullptr; }

private:
  HANDLE m_handle;
};

} // namespace host
