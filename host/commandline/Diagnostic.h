// Messages about a place in a script, as compilers print them:
//
//   sweep.dcs:3:7: error: Unknown identifier: `countr` is not known here
//       3 | x = 1 + countr;
//         |         ^~~~~~
//         = did you mean `counter`?
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace host {

enum class Colours : bool { kNone, kTerminal };

// What a stream gets: colours for a terminal, unless the environment says otherwise (NO_COLOR, TERM=dumb).
Colours ColoursOfOutput();
Colours ColoursOfMessages();

// Bytes of a text.
struct MarkedRange {
  std::uint32_t begin = 0;
  std::uint32_t end = 0;
};

struct Diagnostic {
  struct Related {
    MarkedRange range;
    std::string remark;
  };
  std::string file;
  std::string kind; // "error", "note"
  std::string message;
  std::string hint;           // may be empty
  std::uint32_t position = 0; // where it is
  MarkedRange mark;           // around the position
  std::optional<Related> related;
};

// A problem that somebody else has found: with a message, a hint, a range, a mark, and perhaps a related place.
template <class Problem>
Diagnostic DiagnosticOf(std::string file, const Problem& problem) {
  Diagnostic diagnostic;
  diagnostic.file = std::move(file);
  diagnostic.kind = "error";
  diagnostic.message = problem.message;
  diagnostic.hint = problem.hint;
  diagnostic.position = problem.range.begin;
  diagnostic.mark = {problem.mark.begin, problem.mark.end};
  if (problem.related)
    diagnostic.related = {{problem.related->range.begin, problem.related->range.end}, problem.related->remark};
  return diagnostic;
}

// "FILE:LINE:COLUMN", from 1, columns in bytes.
std::string PlaceText(std::string_view file, std::string_view text, std::uint32_t position);

// Lines, each with its end, in UTF-8: a line of `text` that is none counts as Windows-1252. Nothing of the text reaches
// a terminal that it would obey.
std::string DiagnosticText(const Diagnostic& diagnostic, std::string_view text, Colours colours);

// The line of `position`, or the part around it, and a line with marks below.
std::string Excerpt(std::string_view text, std::uint32_t position, MarkedRange mark, std::string_view remark,
                    Colours colours);

} // namespace host
