#include "platform/Platform.h"

#include <windows.h>

#include <array>

namespace platform {

namespace {

using PathBuffer = std::array<char, kMaxPath + 1>;

// `length` is what the system answered: 0 for a failure, more than the buffer when the path does not fit.
std::optional<std::string> TakePath(const PathBuffer& buffer, DWORD length) {
  if (length == 0 || length >= buffer.size())
    return std::nullopt;
  return std::string(buffer.data(), length);
}

} // namespace

std::optional<std::string> FullPath(const std::string& path) {
  if (path.find('\0') != std::string::npos)
    return std::nullopt; // the system would see another name
  PathBuffer buffer;
  return TakePath(buffer, GetFullPathNameA(path.c_str(), static_cast<DWORD>(buffer.size()), buffer.data(), nullptr));
}

std::string CurrentFolder() {
  PathBuffer buffer;
  std::string folder =
      TakePath(buffer, GetCurrentDirectoryA(static_cast<DWORD>(buffer.size()), buffer.data())).value_or("");
  if (folder.size() == 3) // "C:\", the only one with a backslash behind it
    folder.pop_back();
  return folder;
}

bool IsLeadByte(char byte) {
  return IsDBCSLeadByte(static_cast<BYTE>(byte)) != FALSE;
}

} // namespace platform
