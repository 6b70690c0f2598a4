#include "host/lineedit/PlainInput.h"

namespace host {

std::optional<std::string> TakeLine(std::string& bytes) {
  const std::size_t end = bytes.find('\n');
  if (end == std::string::npos)
    return std::nullopt;
  std::string line = bytes.substr(0, end);
  bytes.erase(0, end + 1);
  if (line.ends_with('\r'))
    line.pop_back();
  return line;
}

} // namespace host
