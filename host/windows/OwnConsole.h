// The console window that the system makes for a program of its console kind.
#pragma once

namespace host {

// Gives the console up when it was made for this program alone, as by a start from the desktop, so that its window goes
// away. A console that the program was started from stays in use, for messages and Ctrl+C.
void LeaveOwnConsole();

} // namespace host
