#include "host/support/Files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <filesystem>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace host {

namespace {

bool IsSeparator(char c) {
  return c == '\\' || c == '/';
}

// A colon is a letter like any other in a name here, so there is only the drive of the whole file system.
bool BeginsWithDrive(const std::string& path) {
  return path.size() >= 3 && (path[0] == 'Z' || path[0] == 'z') && path[1] == ':' && IsSeparator(path[2]);
}

} // namespace

std::string SystemPath(const std::string& path) {
  std::string result = BeginsWithDrive(path) ? path.substr(2) : path;
  std::replace(result.begin(), result.end(), '\\', '/');
  return result;
}

// ".." is resolved in the text, as Windows does: the folder in front of it need not exist. There is no drive but "Z:",
// and there are no network paths.
std::string FromScriptPath(const std::string& path) {
  const bool hasDrive = path.size() >= 2 && path[1] == ':';
  if ((hasDrive && path[0] != 'Z' && path[0] != 'z') || path.starts_with("\\\\"))
    return {};
  return std::filesystem::path(SystemPath(hasDrive ? path.substr(2) : path)).lexically_normal();
}

std::string ScriptPath(const std::string& typed) {
  std::string result = typed;
  if (typed.starts_with('/'))
    result = "Z:" + typed;
  else if (typed.size() >= 2 && typed[1] == ':' && !BeginsWithDrive(typed)) // no drive for the script either
    result = "./" + typed;
  std::replace(result.begin(), result.end(), '/', '\\');
  return result;
}

std::string PathInFolder(const std::string& folder, const std::string& name) {
  return folder + '/' + name;
}

bool IsRegularFile(const std::string& path) {
  struct stat status = {};
  return stat(SystemPath(path).c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool IsAnythingAt(const std::string& path) {
  struct stat status = {};
  return lstat(SystemPath(path).c_str(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

std::optional<std::string> ReplaceablePath(const std::string& path) {
  constexpr int kMostLinks = 40; // as the system itself follows
  std::filesystem::path place = SystemPath(path);
  std::error_code error;
  for (int links = 0; is_symlink(symlink_status(place, error)); ++links) {
    if (links == kMostLinks)
      return std::nullopt;
    place = place.parent_path() / read_symlink(place, error);
  }
  const bool isNew = !exists(place, error) && !error;
  return isNew || (IsRegularFile(place) && access(place.c_str(), W_OK) == 0) ? std::optional(place.string())
                                                                             : std::nullopt;
}

std::FILE* CreateNewFile(const std::string& path) {
  return std::fopen(SystemPath(path).c_str(), "wbx");
}

bool ReplaceLocalFile(const std::string& from, const std::string& to) {
  return std::rename(SystemPath(from).c_str(), SystemPath(to).c_str()) == 0;
}

bool RemoveLocalFile(const std::string& path) {
  return std::remove(SystemPath(path).c_str()) == 0;
}

bool MakeFolder(const std::string& path) {
  const std::string folder = SystemPath(path);
  struct stat status = {};
  return mkdir(folder.c_str(), 0777) == 0 || (stat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode));
}

std::optional<std::vector<std::string>> ListFolder(const std::string& path) {
  struct Closer {
    void operator()(DIR* folder) const { closedir(folder); }
  };
  const std::unique_ptr<DIR, Closer> folder(opendir(SystemPath(path).c_str()));
  if (!folder)
    return std::nullopt;
  std::vector<std::string> names;
  errno = 0; // the only way to tell the end from an error
  while (const dirent* entry = readdir(folder.get()))
    names.emplace_back(entry->d_name);
  if (errno != 0)
    return std::nullopt;
  std::sort(names.begin(), names.end());
  return names;
}

} // namespace host
