#include "platform/Platform.h"
#include "platform/posix/SystemPath.h"

#include <limits.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace platform {

namespace {

std::string WithBackslashes(std::string path) {
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

bool HasDrive(const std::string& path) {
  return path.size() >= 2 && path[1] == ':';
}

bool IsRootDrive(const std::string& path) {
  return path[0] == 'Z' || path[0] == 'z';
}

// A path with backslashes in two parts: what ".." never removes ("Z:\", "\\"), and the names behind it.
struct SplitPath {
  std::string root;
  std::string names;
};

// Nothing when the current folder is needed and cannot be had.
std::optional<SplitPath> Absolute(const std::string& path) {
  if (path.starts_with("\\\\"))
    return SplitPath{"\\\\", path.substr(2)};
  const std::string drive = HasDrive(path) ? path.substr(0, 2) : "Z:";
  const std::string rest = HasDrive(path) ? path.substr(2) : path;
  if (rest.starts_with('\\') || !IsRootDrive(drive))
    return SplitPath{drive + "\\", rest};
  const std::string folder = CurrentFolder();
  if (folder.empty())
    return std::nullopt;
  return SplitPath{"Z:\\", folder.substr(2) + "\\" + rest};
}

// Drops empty names and ".", and each ".." with the name in front of it. A backslash at the end stays.
std::string Resolved(std::string_view names) {
  std::string result;
  while (!names.empty()) {
    const std::size_t end = std::min(names.find('\\'), names.size());
    const std::string_view name = names.substr(0, end);
    names.remove_prefix(std::min(end + 1, names.size()));
    if (name == "..") {
      result.erase(result.size() < 2 ? 0 : result.rfind('\\', result.size() - 2) + 1);
    } else if (!name.empty() && name != ".") {
      result.append(name).push_back('\\');
    }
  }
  return result;
}

} // namespace

std::optional<std::string> SystemPath(const std::string& path) {
  std::string result = path;
  std::replace(result.begin(), result.end(), '\\', '/');
  if (result.starts_with("//") || (HasDrive(result) && !IsRootDrive(result)))
    return std::nullopt;
  return HasDrive(result) ? result.substr(2) : result;
}

std::optional<std::string> FullPath(const std::string& path) {
  const std::optional<SplitPath> split = path.empty() ? std::nullopt : Absolute(WithBackslashes(path));
  if (!split)
    return std::nullopt;
  std::string full = split->root + Resolved(split->names);
  if (full.size() > split->root.size() && !split->names.ends_with('\\'))
    full.pop_back();
  return full.size() <= kMaxPath ? std::optional(full) : std::nullopt;
}

std::string CurrentFolder() {
  std::array<char, PATH_MAX> buffer;
  if (!getcwd(buffer.data(), buffer.size()))
    return {};
  std::string folder = WithBackslashes(std::string("Z:") + buffer.data());
  if (folder.ends_with('\\'))
    folder.pop_back();
  return folder.size() <= kMaxPath ? folder : std::string();
}

} // namespace platform
