// `ondscript check`: reads scripts without running them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// Prints each problem as "FILE:LINE:COLUMN: error: TEXT", and a "note" for a script that seems to be saved in another
// encoding; "-" among the files is standard input. `names` are variables
// that a host would set. Returns the process's exit code: 0, kExitProblemsFound, or kExitStream when a file could not
// be read. `program` begins the messages on standard error.
int CheckFiles(std::string_view program, const std::vector<std::string>& files, const std::vector<std::string>& names);
