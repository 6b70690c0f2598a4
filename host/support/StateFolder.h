// Where programs keep what they remember for a user. Bodies: win32/ and posix/.
#pragma once

#include <string>

namespace host {

// The folder of these programs, which is made if need be, for the functions of Files.h: in $XDG_STATE_HOME or
// ~/.local/state, which only the user can look into, or in %APPDATA%. Empty when there is none.
std::string StateFolder();

} // namespace host
