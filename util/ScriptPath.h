// Where a script's file names lead.
#pragma once

#include <string>

// Resolves `name` as a script wrote it against the script's base directory (no backslash at its end). One slash of
// either kind in front is a place on the base directory's drive, two are a network path. Pure text: nothing is looked
// up, steps stay as they are. Empty, which names nothing, when the name is empty or only a slash, and for a name
// relative to an empty base directory.
std::string ResolveScriptPath(const std::string& baseDirectory, const std::string& name);
