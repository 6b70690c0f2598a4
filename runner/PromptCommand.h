// `ondscript prompt`, and `ondscript` alone at a terminal. Body: prompt/.
#pragma once

#include "host/commandline/CommandLine.h"

#include <string_view>

// Runs what is typed, on the channel of the command line. Returns the process's exit code. `program` begins messages.
int PromptCommand(std::string_view program, const host::CommandLine& line);
