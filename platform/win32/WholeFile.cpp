#include "platform/Platform.h"

#include <windows.h>

#include <algorithm>

namespace platform {

namespace {

class Handle {
public:
  explicit Handle(HANDLE value) : m_value(value) {}
  ~Handle() { Close(); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  bool IsOpen() const { return m_value != INVALID_HANDLE_VALUE; }
  HANDLE Get() const { return m_value; }
  // False also when nothing was open.
  bool Close() { return IsOpen() && CloseHandle(std::exchange(m_value, INVALID_HANDLE_VALUE)); }

private:
  HANDLE m_value;
};

HANDLE OpenToReplace(const std::string& path) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  return CreateFileA(path.c_str(), GENERIC_WRITE, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr);
}

// The path of the file itself, which `path` may name through a link; `path` where the system has no other for it.
std::string BehindLinks(const std::string& path, const Handle& existing) {
  constexpr std::size_t kPrefix = 4; // the system puts \\?\ in front
  std::string named(32768, '\0');
  const DWORD length = GetFinalPathNameByHandleA(existing.Get(), named.data(), static_cast<DWORD>(named.size()), 0);
  if (length <= kPrefix || length >= named.size())
    return path;
  named.resize(length);
  return named.find('?', kPrefix) == std::string::npos ? named : path; // a character that the code page does not have
}

// Makes a file of a name that nobody has in the folder: what an interrupted program, or anybody else, has left there is
// passed over. The names are short: the path must not be too long where the target's is not.
HANDLE CreateNewFile(const std::string& folder, std::string* path) {
  HANDLE file;
  unsigned number = 0;
  do {
    *path = folder + "~" + std::to_string(number++);
    file =
        CreateFileA(path->c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  } while (file == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_EXISTS);
  return file;
}

// A new file in the folder of another one, removed by the destructor unless it has taken that one's place.
class FileBeside {
public:
  explicit FileBeside(const std::string& target)
      : m_target(target), m_file(CreateNewFile(target.substr(0, target.find_last_of("\\/:") + 1), &m_path)),
        m_exists(m_file.IsOpen()) {}
  ~FileBeside() {
    m_file.Close();
    if (m_exists)
      DeleteFileA(m_path.c_str());
  }
  FileBeside(const FileBeside&) = delete;
  FileBeside& operator=(const FileBeside&) = delete;

  bool IsOpen() const { return m_file.IsOpen(); }
  bool TakeRightsOfTarget() const;
  bool Write(std::string_view bytes) const;
  // Only when the bytes are safely on the disk.
  bool TakePlace() {
    m_exists = !FlushFileBuffers(m_file.Get()) || !m_file.Close() ||
               !MoveFileExA(m_path.c_str(), m_target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
    return !m_exists;
  }

private:
  const std::string& m_target;
  std::string m_path;
  Handle m_file;
  bool m_exists; // under m_path
};

// Some disks have no access lists.
bool FileBeside::TakeRightsOfTarget() const {
  DWORD size = 0;
  GetFileSecurityA(m_target.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  std::string list(size, '\0');
  if (!GetFileSecurityA(m_target.c_str(), DACL_SECURITY_INFORMATION, list.data(), size, &size))
    return true;
  return SetFileSecurityA(m_path.c_str(), DACL_SECURITY_INFORMATION, list.data());
}

bool FileBeside::Write(std::string_view bytes) const {
  constexpr std::size_t kMostAtOnce = 1U << 30;
  while (!bytes.empty()) {
    DWORD count = 0;
    const auto size = static_cast<DWORD>(std::min(bytes.size(), kMostAtOnce));
    if (!WriteFile(m_file.Get(), bytes.data(), size, &count, nullptr) || count == 0)
      return false;
    bytes.remove_prefix(count);
  }
  return true;
}

} // namespace

bool WriteWholeFile(const std::string& path, std::string_view bytes) {
  if (path.find('\0') != std::string::npos)
    return false; // the system would see another name
  // Opened for writing, so that a file that may not be written is not replaced either.
  Handle existing(OpenToReplace(path));
  if (existing.IsOpen() ? GetFileType(existing.Get()) != FILE_TYPE_DISK : GetLastError() != ERROR_FILE_NOT_FOUND)
    return false;
  const std::string target = BehindLinks(path, existing);
  const bool exists = existing.Close(); // the system replaces no open file
  FileBeside file(target);
  return file.IsOpen() && (!exists || file.TakeRightsOfTarget()) && file.Write(bytes) && file.TakePlace();
}

} // namespace platform
