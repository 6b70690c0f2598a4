#include "util/ScriptPath.h"

std::string ResolveScriptPath(const std::string& baseDirectory, const std::string& name) {
  if (name.find('\0') != std::string::npos) // the system would see another, shorter name
    return {};
  const bool isNetworkPath = name.starts_with("\\\\");
  const bool hasDrive = name.size() >= 2 && name[1] == ':';
  if (name.empty() || isNetworkPath || hasDrive)
    return name;
  if (name[0] == '\\')
    return name.size() == 1 ? std::string() : baseDirectory.substr(0, 2) + name;
  return baseDirectory + "\\" + name;
}
