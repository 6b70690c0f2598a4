// How a line that is being typed lies in one row of the screen, which never scrolls: a line that is too long shows its
// part around the cursor.
#pragma once

#include "host/lineedit/LineBuffer.h"

#include <string>
#include <string_view>

namespace host {

struct LineLayout {
  std::string shown;        // in UTF-8, without control characters
  std::string beforeCursor; // the part of it that stands in front of the cursor
  std::size_t columns = 0;  // that `shown` takes
};

// `prefix` stands in front of the line; of a long one its end is shown. Every character counts as one column.
LineLayout LayLine(std::string_view prefix, const LineBuffer& line, std::size_t columns);

} // namespace host
