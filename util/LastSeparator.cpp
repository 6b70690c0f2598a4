#include "util/LastSeparator.h"

std::size_t LastSeparator(std::string_view path, bool (*isLeadByte)(char)) {
  std::size_t last = std::string_view::npos;
  for (std::size_t i = 0; i < path.size(); ++i) {
    if (isLeadByte(path[i]))
      ++i;
    else if (path[i] == '\\')
      last = i;
  }
  return last;
}
