// The lines of a trace file: one JSON object each.
#pragma once

#include "host/trace/TraceRecord.h"

#include <tl/expected.hpp>

#include <string>
#include <string_view>
#include <variant>

namespace host {

// Each appends one line with its end. Text that is no UTF-8 is taken for Windows-1252.
void AppendTraceLine(std::string& file, const TraceHeader& header);
void AppendTraceLine(std::string& file, const TraceCall& call);
void AppendTraceLine(std::string& file, const TraceEvent& event);

using TraceLine = std::variant<TraceHeader, TraceCall, TraceEvent>;

// Reads a line without its end, or tells what is wrong with it. Members that it does not know are left alone.
tl::expected<TraceLine, std::string> ParseTraceLine(std::string_view line);

// "2026-11-21T20:46:28.123456Z" of microseconds since 1970.
std::string TraceTimeText(std::int64_t time);
// "0A1B2C3D"
std::string CrcText(std::uint32_t crc);

} // namespace host
