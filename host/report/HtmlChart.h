// Pictures of a report page, as SVG inside the page.
#pragma once

#include "host/report/RunRecord.h"

#include <string>

namespace host {

// Where a value lies beside its limits.
std::string MeasurementChart(const Measurement& measurement);
// What went to the device and came from it, over the time of the script; when the user was asked.
std::string TrafficChart(const ScriptRecord& script);

} // namespace host
