// Checks scripts without running them, for people, editors and build servers.
#pragma once

#include "scriptrt/check/ScriptProblem.h"

// Reads a whole script with the reader that runs use. `externalNames` are variables that a host would set. The first
// problem is the one that a run would report; there are not more than a screen or two can show. A zero byte must follow
// the text.
std::vector<ScriptProblem> CheckScript(std::string_view text, const std::vector<std::string>& externalNames);
