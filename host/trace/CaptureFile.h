// A trace as a capture file (pcapng), for the analysers that people have.
#pragma once

#include "host/trace/TraceReader.h"

#include <string>
#include <string_view>

namespace host {

// One packet for each piece of bytes, in DLT_USER0 as they went over the line, with its direction and the call as a
// comment; calls and events without bytes are empty packets. Receives that found nothing are left out.
std::string CaptureOf(const Trace& trace);
// Whether a file begins as one.
bool IsCapture(std::string_view beginning);

} // namespace host
