#include "platform/Platform.h"

#include <windows.h>

#include <algorithm>

namespace platform {

namespace {

HANDLE OpenHandle(const std::string& path, DWORD access, DWORD disposition) {
  if (path.find('\0') != std::string::npos)
    return INVALID_HANDLE_VALUE; // the system would see another name
  const HANDLE file = CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, disposition,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE || GetFileType(file) == FILE_TYPE_DISK)
    return file;
  CloseHandle(file); // a device ("CON", "COM1"), which might never come to an end
  return INVALID_HANDLE_VALUE;
}

HANDLE OpenHandle(const std::string& path, File::Mode mode) {
  switch (mode) {
  case File::Mode::kRead:
    return OpenHandle(path, GENERIC_READ, OPEN_EXISTING);
  case File::Mode::kUpdate:
    return OpenHandle(path, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS);
  case File::Mode::kCreate:
    return OpenHandle(path, GENERIC_WRITE, CREATE_ALWAYS);
  }
  return INVALID_HANDLE_VALUE;
}

HANDLE HandleOf(std::intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

// Repeats `step` (bytes done so far, bytes left as far as one call takes them, count) until all is done, nothing more
// comes, or it fails.
template <typename Step>
std::size_t Transfer(std::size_t size, bool* sound, Step step) {
  constexpr std::size_t kMostAtOnce = 1U << 30;
  std::size_t done = 0;
  while (done < size) {
    DWORD count = 0;
    const bool ok = step(done, static_cast<DWORD>(std::min(size - done, kMostAtOnce)), &count);
    *sound = *sound && ok;
    done += count;
    if (!ok || count == 0)
      break;
  }
  return done;
}

} // namespace

std::optional<File> File::Open(const std::string& path, Mode mode) {
  const HANDLE handle = OpenHandle(path, mode);
  if (handle == INVALID_HANDLE_VALUE)
    return std::nullopt;
  return File(reinterpret_cast<std::intptr_t>(handle));
}

std::optional<std::uint64_t> File::Size() {
  LARGE_INTEGER size;
  if (!GetFileSizeEx(HandleOf(m_handle), &size))
    return std::nullopt;
  return static_cast<std::uint64_t>(size.QuadPart);
}

bool File::Seek(std::uint64_t offset) {
  LARGE_INTEGER place;
  place.QuadPart = static_cast<LONGLONG>(offset);
  return SetFilePointerEx(HandleOf(m_handle), place, nullptr, FILE_BEGIN);
}

std::size_t File::Read(char* buffer, std::size_t size) {
  return Transfer(size, &m_sound, [&](std::size_t done, DWORD left, DWORD* count) {
    return ReadFile(HandleOf(m_handle), buffer + done, left, count, nullptr) != FALSE;
  });
}

std::size_t File::Write(const char* data, std::size_t size) {
  return Transfer(size, &m_sound, [&](std::size_t done, DWORD left, DWORD* count) {
    return WriteFile(HandleOf(m_handle), data + done, left, count, nullptr) != FALSE;
  });
}

bool File::Close() {
  const std::intptr_t handle = std::exchange(m_handle, kClosed);
  return handle != kClosed && CloseHandle(HandleOf(handle)) && m_sound;
}

} // namespace platform
