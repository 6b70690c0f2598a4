#include "host/support/Files.h"

#include "host/support/win32/Handle.h"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <memory>
#include <sys/stat.h>
#include <windows.h>

namespace host {

std::string SystemPath(const std::string& path) {
  return path;
}

std::string FromScriptPath(const std::string& path) {
  return path;
}

std::string ScriptPath(const std::string& typed) {
  return typed;
}

std::string PathInFolder(const std::string& folder, const std::string& name) {
  return folder + '\\' + name;
}

// Names of devices ("CON", "COM1") look like files until they are open.
bool IsRegularFile(const std::string& path) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const Handle file(CreateFileA(path.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
  return file.IsOpen() && GetFileType(file.Get()) == FILE_TYPE_DISK;
}

bool IsAnythingAt(const std::string& path) {
  if (GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES)
    return true;
  const DWORD error = GetLastError();
  return error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND && error != ERROR_INVALID_NAME;
}

std::optional<std::string> ReplaceablePath(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  constexpr DWORD kKept = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY;
  const bool isKept = attributes != INVALID_FILE_ATTRIBUTES && ((attributes & kKept) != 0 || !IsRegularFile(path));
  return isKept ? std::nullopt : std::optional(path);
}

std::FILE* CreateNewFile(const std::string& path) {
  const int file = _open(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
  return file < 0 ? nullptr : _fdopen(file, "wb");
}

bool ReplaceLocalFile(const std::string& from, const std::string& to) {
  return MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING) != FALSE;
}

bool RemoveLocalFile(const std::string& path) {
  return DeleteFileA(path.c_str()) != FALSE;
}

bool MakeFolder(const std::string& path) {
  if (CreateDirectoryA(path.c_str(), nullptr) != FALSE)
    return true;
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::optional<std::vector<std::string>> ListFolder(const std::string& path) {
  struct Closer {
    void operator()(HANDLE search) const { FindClose(search); }
  };
  WIN32_FIND_DATAA found = {};
  const HANDLE first = FindFirstFileA(PathInFolder(path, "*").c_str(), &found);
  if (first == INVALID_HANDLE_VALUE)
    return std::nullopt;
  const std::unique_ptr<void, Closer> search(first);
  std::vector<std::string> names;
  do
    names.emplace_back(found.cFileName);
  while (FindNextFileA(search.get(), &found) != FALSE);
  if (GetLastError() != ERROR_NO_MORE_FILES)
    return std::nullopt;
  std::sort(names.begin(), names.end());
  return names;
}

} // namespace host
