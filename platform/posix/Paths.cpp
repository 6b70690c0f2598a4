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

// Drops empty names and ".", and each ".." with the name in front of it. A backslash at the end stays.
std::string Resolved(std::string_view names) {
  const bool endsWithName = !names.ends_with('\\');
  std::string result;
  while (!names.empty()) {
    const std::size_t end = std::min(names.find('\\'), names.size());
    const std::string_view name = names.substr(0, end);
    names.remove_prefix(std::min(end + 1, names.size()));
    if (name == "..")
      result.erase(result.size() < 2 ? 0 : result.rfind('\\', result.size() - 2) + 1);
    else if (!name.empty() && name != ".")
      result.append(name).push_back('\\');
  }
  if (endsWithName && !result.empty())
    result.pop_back();
  return result;
}

// As long as it comes. Nothing for the empty path and for one with a zero byte, where the system would see another
// name, and when the current folder is needed and cannot be had.
std::optional<std::string> AbsolutePath(const std::string& given) {
  if (given.empty() || given.find('\0') != std::string::npos)
    return std::nullopt;
  const std::string path = WithBackslashes(given);
  if (path.starts_with("\\\\"))
    return "\\\\" + Resolved(path.substr(2));
  const std::string drive = HasDrive(path) ? path.substr(0, 2) : "Z:";
  const std::string rest = HasDrive(path) ? path.substr(2) : path;
  if (rest.starts_with('\\') || !IsRootDrive(drive))
    return drive + "\\" + Resolved(rest);
  const std::string folder = CurrentFolder();
  if (folder.empty())
    return std::nullopt;
  return "Z:\\" + Resolved(folder.substr(2) + "\\" + rest);
}

} // namespace

std::optional<std::string> SystemPath(const std::string& path) {
  const std::optional<std::string> absolute = AbsolutePath(path);
  if (!absolute || !IsRootDrive(*absolute))
    return std::nullopt;
  std::string result = absolute->substr(2);
  std::replace(result.begin(), result.end(), '\\', '/');
  return result;
}

std::optional<std::string> FullPath(const std::string& path) {
  std::optional<std::string> full = AbsolutePath(path);
  return full && full->size() <= kMaxPath ? full : std::nullopt;
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

bool IsLeadByte(char) {
  return false;
}

} // namespace platform
