// The words for how a file is stored on the device, as job files and the File Manager's list spell them.
#pragma once

#include <cstdint>
#include <string_view>

// "normal" for everything that is not another mode. OND_FILE_…
const char* FileModeWord(std::uint32_t mode);
// Without regard to ASCII case; OND_FILE_NORMAL for every other text.
std::uint32_t FileModeOf(std::string_view word);
