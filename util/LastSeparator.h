// Where a path's last name begins, whatever the code page.
#pragma once

#include "platform/Platform.h"

#include <string_view>

// Position of the last backslash that separates names, or npos. In a code page with characters of two bytes the second
// one may look like a backslash; `isLeadByte` tells which bytes begin such a character.
std::size_t LastSeparator(std::string_view path, bool (*isLeadByte)(char) = platform::IsLeadByte);
