// Bodies: win32/ and posix/.
#pragma once

namespace host {

// Makes standard input and output pass every byte as it is. To be called before either is used.
void UseBinaryStreams();

} // namespace host
