// The system's spelling of the paths that the portable part uses.
#pragma once

#include <optional>
#include <string>

namespace platform {

// "Z:\a\b" and "\a\b" are "/a/b"; other names start from the current folder. "." and ".." are resolved in the text, as
// Windows does: the folder in front of ".." need not exist. Nothing for other drives and for network paths.
std::optional<std::string> SystemPath(const std::string& path);

} // namespace platform
