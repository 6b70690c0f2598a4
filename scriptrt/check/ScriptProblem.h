// Something wrong with a script, for a person: where, what, and what leads to the fix.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Bytes of a script's text.
struct TextRange {
  std::uint32_t begin = 0;
  std::uint32_t end = 0;
};

// A place beside the problem's own, and what is there.
struct RelatedPlace {
  TextRange range;
  std::string remark;
};

struct ScriptProblem {
  std::string message; // the class of the error, and what it is about
  std::string hint;    // how it is mended; empty where that is not known
  TextRange range;     // the token itself; what `mark` begins with may stand in front of it
  TextRange mark;      // what is to be marked in the line: around the token
  std::optional<RelatedPlace> related;
};
