// What somebody reads when a run is not what its tape tells.
#pragma once

#include "host/channel/replay/Tape.h"

#include <string>

namespace host {

// `step` is the tape's side, null behind its end; `run` the run's side, null when it has ended. `file` names the tape.
std::string DifferenceText(const std::string& file, const Tape::Step* step, const TraceCall* run);

} // namespace host
