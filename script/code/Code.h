// What the machine runs: the instructions of one function, or of the main program.
#pragma once

#include "script/code/Instructions.h"

#include <vector>

struct Code {
  std::vector<Instruction> instructions;
  // By instruction, where in the text an error in it is reported: the start of the token that reading the program
  // piece by piece would have come to. Of a Return, where such reading would have been at last; kNoPlace if the
  // function has no statement.
  std::vector<std::uint32_t> places;
  std::uint32_t frameSize = 0;
};

inline constexpr std::uint32_t kNoPlace = 0xFFFFFFFF;
