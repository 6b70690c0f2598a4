#include "host/support/SoleFile.h"

#include "host/support/SystemError.h"

#include <algorithm>
#include <windows.h>

namespace host {
namespace {

HANDLE HandleOf(std::intptr_t native) {
  return reinterpret_cast<HANDLE>(native);
}

} // namespace

tl::expected<SoleFile, std::string> SoleFile::Open(const std::string& path) {
  return OpenLocked(path, static_cast<int>(GENERIC_READ | GENERIC_WRITE), OPEN_ALWAYS);
}

tl::expected<SoleFile, std::string> SoleFile::Hold(const std::string& path) {
  return OpenLocked(path, static_cast<int>(GENERIC_READ), OPEN_EXISTING);
}

tl::expected<SoleFile, std::string> SoleFile::OpenLocked(const std::string& path, int mode, int creation) {
  const HANDLE handle = CreateFileA(path.c_str(), static_cast<DWORD>(mode), FILE_SHARE_READ, nullptr,
                                    static_cast<DWORD>(creation), FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle != INVALID_HANDLE_VALUE)
    return SoleFile(reinterpret_cast<std::intptr_t>(handle));
  const DWORD error = GetLastError();
  return tl::unexpected(error == ERROR_SHARING_VIOLATION ? std::string("it is in use")
                                                         : SystemErrorText(static_cast<int>(error)));
}

void SoleFile::Close() {
  if (m_native != kNone)
    CloseHandle(HandleOf(m_native));
}

std::string SoleFile::Beginning(std::size_t size) const {
  std::string bytes(size, '\0');
  DWORD count = 0;
  const HANDLE file = HandleOf(m_native);
  if (GetFileType(file) == FILE_TYPE_DISK && ReadFile(file, bytes.data(), static_cast<DWORD>(size), &count, nullptr))
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
  bytes.resize(count);
  return bytes;
}

bool SoleFile::Clear() {
  const HANDLE file = HandleOf(m_native);
  return GetFileType(file) != FILE_TYPE_DISK ||
         (SetFilePointer(file, 0, nullptr, FILE_BEGIN) == 0 && SetEndOfFile(file) != FALSE);
}

int SoleFile::Write(std::string_view bytes) {
  constexpr std::size_t kMost = 1 << 20;
  while (!bytes.empty()) {
    DWORD count = 0;
    const auto size = static_cast<DWORD>(std::min(bytes.size(), kMost));
    if (!WriteFile(HandleOf(m_native), bytes.data(), size, &count, nullptr))
      return static_cast<int>(GetLastError());
    bytes.remove_prefix(count);
  }
  return 0;
}

} // namespace host
