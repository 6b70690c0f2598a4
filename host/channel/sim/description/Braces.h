// The parts of a text with {NAME} in it.
#pragma once

#include "host/channel/sim/description/StatementReader.h"

#include <string>
#include <string_view>
#include <vector>

namespace host {

struct BracedPart {
  bool isBraced;
  std::string text; // without the braces
  std::size_t column;
};

// A brace that is written as an escape is a byte like any other. A mistake goes to the reader.
std::vector<BracedPart> SplitAtBraces(const QuotedText& text, StatementReader& reader);
bool IsName(std::string_view text);

} // namespace host
