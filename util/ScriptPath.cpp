#include "util/ScriptPath.h"

namespace {

bool IsSlash(char c) {
  return c == '\\' || c == '/';
}

} // namespace

std::string ResolveScriptPath(const std::string& baseDirectory, const std::string& name) {
  if (name.empty() || name.find('\0') != std::string::npos) // the system would see another, shorter name
    return {};
  const bool isRooted = IsSlash(name[0]);
  if (name.size() == 1 && isRooted)
    return {};
  if (isRooted && IsSlash(name[1]))
    return "\\\\" + name.substr(2);
  if (isRooted)
    return baseDirectory.substr(0, 2) + "\\" + name.substr(1);
  const bool hasDrive = name.size() >= 2 && name[1] == ':';
  if (hasDrive)
    return name;
  return baseDirectory.empty() ? std::string() : baseDirectory + "\\" + name;
}
