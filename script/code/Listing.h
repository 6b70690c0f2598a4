// Code as text, for those who change the compiler.
#pragma once

#include "script/program/ScriptProgram.h"

#include <string>

// The code of the main program and of every function that has been read, in the form for arguments by value: a line for
// each instruction with its number, the place of its error, its name, and a, b, c, n, k as far as they are not 0.
// The program has been read with success and does not run.
std::string ListCode(ScriptProgram& program);
