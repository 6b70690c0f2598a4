// Makes the use of freed memory show: everything that the module frees is filled with a pattern first and kept a while.
#pragma once

#include <windows.h>

// From now on, for as long as the module stays loaded. A pointer read from freed memory leads nowhere then, so that a
// call through it ends the test.
void PoisonFreedMemory(HMODULE module);
