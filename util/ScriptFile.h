// Script files as they are read for a run.
#pragma once

#include <string>

enum class ScriptFileResult { kRead, kCannotOpen, kCannotRead };

// Reads the whole file as it is. Throws std::bad_alloc.
ScriptFileResult ReadScriptFile(const std::string& fullPath, std::string* text);

// The folder of a full path, without trailing backslash: the script's base directory.
std::string FolderOfScript(const std::string& fullPath);
