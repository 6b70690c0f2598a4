// Script files as they are read for a run.
#pragma once

#include <string>

enum class ScriptFileResult {
  kRead,
  kCannotOpen,
  kCannotRead,
  kTooLong, // 4 GiB or more, which is known before anything is read
};

// Reads the whole file as it is; one whose size says 0 until its end, because the system makes the bytes of some files
// when they are read. Throws std::bad_alloc.
ScriptFileResult ReadScriptFile(const std::string& fullPath, std::string* text);

// The folder of a full path, without trailing backslash: the script's base directory.
std::string FolderOfScript(const std::string& fullPath);
