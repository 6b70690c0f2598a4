// A trace as text, for people.
#pragma once

#include "host/trace/TraceFilter.h"
#include "host/trace/TraceReader.h"

#include <functional>
#include <string>
#include <string_view>

namespace host {

enum class TraceTimes { kAbsolute, kSinceStart, kSinceLast };

struct TraceTextOptions {
  TraceFilter filter;
  TraceTimes times = TraceTimes::kSinceStart;
  std::uint64_t gap = 20000; // microseconds of silence that end a block of bytes
};

// `write` takes the text piece by piece. Bytes of one direction stand together in a block until there is silence or
// something else happens; receives that found nothing are only counted. A summary of what is shown comes last.
void WriteTraceText(const Trace& trace, const TraceTextOptions& options,
                    const std::function<void(std::string_view)>& write);

// A record without its bytes, in one line: "TransmitFile "a.bin" id 1 type 2 failed: 6 (Device full)".
std::string RecordText(const TraceCall& call);
std::string RecordText(const TraceEvent& event);
// What is known of the file that a call transfers: ", 12 bytes with CRC-32 0A1B2C3D"; mostly empty.
std::string ContentsText(const TraceCall& call);

} // namespace host
