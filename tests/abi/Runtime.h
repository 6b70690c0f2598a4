// The little that a program without any C or C++ library needs: text output and checks.
#pragma once

#include <cstddef>
#include <cstdint>

// Writes text to standard output.
void Print(const char* text);

bool Same(const char* a, const char* b);

// A check that does not hold is printed and makes the program's exit code 1.
void Check(bool holds, const char* what);

// The program.
void Run();
