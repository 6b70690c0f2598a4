// The system's spelling of the paths that the portable part uses.
#pragma once

#include <optional>
#include <string>

namespace platform {

// "Z:\a\b" and "\a\b" are "/a/b", "a\b" and "Z:a\b" are "a/b". Nothing for other drives and for network paths.
std::optional<std::string> SystemPath(const std::string& path);

} // namespace platform
