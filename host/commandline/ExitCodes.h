// What the exit codes of both command lines mean. README.md has the same for users.
#pragma once

#include "frame/contract/OndDeviceClient.h"

namespace host {

// A run exits with its result (EONX_ERR_…), with kExitPartFailed when it ran and the part is bad; these lie beside
// those.
enum ExitCode : int {
  kExitProblemsFound = 1, // `check` found something
  kExitUsage = 2,         // the call itself is wrong
  kExitNoModule = 3,      // OndDeviceClient.dll cannot be used
  kExitNoChannel = 4,     // the channel cannot be set up, or has ended
  kExitStream = 5,        // a file to check, a trace, standard input or standard output fails
  kExitTimeout = 11,      // stopped by --timeout
  kExitAnswers = 12,      // the file of --answers has no answer to a question, or one that does not fit
};

// Why a run ended with this result, for users; empty for success.
const char* ResultText(EONX_ERR_ERRCODE_ result);

} // namespace host
