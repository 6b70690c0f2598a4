#include "host/support/StateFolder.h"

#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>

namespace host {
namespace {

// What is no absolute path counts as not said.
std::filesystem::path FromEnvironment(const char* name) {
  const char* const value = std::getenv(name);
  const std::filesystem::path path = value ? value : "";
  return path.is_absolute() ? path : std::filesystem::path();
}

} // namespace

std::string StateFolder() {
  std::filesystem::path base = FromEnvironment("XDG_STATE_HOME");
  if (base.empty()) {
    base = FromEnvironment("HOME");
    if (base.empty())
      return {};
    base /= ".local/state";
  }
  std::error_code error;
  std::filesystem::create_directories(base, error);
  const std::string folder = base / "onddeviceclient";
  mkdir(folder.c_str(), 0700);
  return std::filesystem::is_directory(folder, error) ? folder : std::string();
}

} // namespace host
