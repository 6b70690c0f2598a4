// The lines in which scripts tell what they measured; docs/reports.md has the form, lib/limit.dcs prints it.
#pragma once

#include "host/report/RunRecord.h"

#include <optional>
#include <string_view>

namespace host {

// Reads
//   limit: NAME = VALUE[ UNIT], LOW to HIGH[ UNIT]: PASS
// with FAIL for PASS, "at least LOW" or "at most HIGH" for the two limits; a script may have printed something in front
// of it on the same line. A value that is not within them has not passed, whatever stands at the end. Nothing for any
// other line.
std::optional<Measurement> ReadMeasurement(std::string_view line);

// Whether one of the lines of a text may be one. Quick.
bool MayHaveMeasurements(std::string_view text);

} // namespace host
