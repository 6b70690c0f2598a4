// The three standard streams as a program finds them. Bodies: win32/ and posix/.
#pragma once

namespace host {

// Makes standard input and output pass every byte as it is, and what has gone wrong with them show as an error of the
// call that meets it: neither a reader that went away nor a file at its limit ends the process, and a stream that was
// closed at the start (a service's, say) stays unusable instead of giving its number to the next file or connection
// that opens. To be called before anything else is opened. False when the system cannot even do this.
bool PrepareStandardStreams();

// Whether somebody looks at standard output on a terminal.
bool IsOutputTerminal();
// The same of standard error.
bool IsMessagesTerminal();

} // namespace host
