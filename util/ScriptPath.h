// Where a script's file names lead.
#pragma once

#include <string>

// Resolves `name` as a script wrote it against the script's base directory (no backslash at its end). Pure text:
// nothing is looked up, steps stay as they are. Empty when the name is empty or only a backslash.
std::string ResolveScriptPath(const std::string& baseDirectory, const std::string& name);
