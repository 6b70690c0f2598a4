// The little that a program without any C or C++ library needs: text output, and checks that are counted.
#pragma once

#include <cstddef>
#include <cstdint>

// Writes text to standard output.
void Print(const char* text);
void Print(std::int64_t number);

bool Same(const char* a, const char* b);
bool Contains(const char* text, const char* part);

// Counts a check; one that does not hold is printed and makes the program's exit code 1.
void Check(bool holds, const char* what);

// The program: runs with the counts at zero.
void Run();
