// The time of day, for lines on a screen and in a file.
#pragma once

#include <string>

namespace host {

std::string ClockText(); // now, local: "14:03:59.120"
std::string DateText();  // the same with the day: "2026-11-21 14:03:59.120"

} // namespace host
