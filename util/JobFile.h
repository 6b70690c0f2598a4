// Job files: one line for each file to copy, "path TAB id TAB type TAB mode LF", the path relative to the job file's
// folder.
#pragma once

#include "frame/contract/OndDeviceClient.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// One local file to copy to the device.
struct TFILEENTRY {
  std::string path;            // full path once loaded
  std::uintptr_t reserved = 0; // neither written nor read by job files
  std::uint8_t fileId = 0;
  std::uint8_t fileType = 0;
  std::uint32_t fileMode = OND_FILE_NORMAL; // OND_FILE_…
};

// Stores the text of one column into an entry. Never throws.
void FillEntry(std::size_t column, std::string* text, TFILEENTRY* entry, std::string& baseFolder);
// 1 = loaded; 0 = cannot be opened or read, the list is untouched.
int LoadJobFile(const char* jobPath, std::vector<TFILEENTRY>* list);
// 1 = saved; 0 = not, and a file that was there before is unharmed.
int SaveJobFile(const char* jobPath, std::vector<TFILEENTRY>* list);
