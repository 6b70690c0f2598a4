#include "host/support/StateFolder.h"
#include "host/support/Files.h"

#include <cstdlib>

namespace host {

std::string StateFolder() {
  const char* const base = std::getenv("APPDATA");
  if (!base || *base == '\0')
    return {};
  std::string folder = PathInFolder(base, "OndDeviceClient");
  return MakeFolder(folder) ? folder : std::string();
}

} // namespace host
