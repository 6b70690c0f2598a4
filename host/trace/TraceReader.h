// Reads whole traces.
#pragma once

#include "host/trace/TraceRecord.h"

#include <tl/expected.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace host {

struct TraceEntry {
  std::size_t line = 0; // where it stands in the file, the first line being 1
  TraceRecord record;
};

struct Trace {
  TraceHeader header;
  std::vector<TraceEntry> entries;
  std::string note; // for users: what was skipped, with place; mostly empty
};

// `name` is what begins each problem: "NAME:LINE: TEXT". A last line that was cut off, as a killed process leaves it,
// is skipped; any other line that is no record is a problem.
tl::expected<Trace, std::string> ParseTrace(std::string_view file, const std::string& name);
// The same of the file at `path`, as a user typed it.
tl::expected<Trace, std::string> ReadTrace(const std::string& path);

} // namespace host
