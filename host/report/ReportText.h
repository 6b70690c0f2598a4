// Texts as reports write them.
#pragma once

#include "host/report/RunRecord.h"

#include <chrono>
#include <string>
#include <string_view>

namespace host {

// As UTF-8, with a picture in place of each control character but tabulator and line feed; XML and HTML allow no other.
std::string Visible(std::string_view bytes);
// Visible, and safe as text and within quotation marks in XML and HTML.
std::string Escaped(std::string_view bytes);

// "2026-11-21T21:00:32.120Z"
std::string IsoTime(std::chrono::system_clock::time_point time);
// "1.234567", of seconds
std::string Seconds(Microseconds time);

std::string TextOf(const NamedValue& value);

// "3.2 to 3.4 V", "at most 20 mA"
std::string LimitsOf(const Measurement& measurement);
// "3.312 V"
std::string ValueOf(const Measurement& measurement);

} // namespace host
