// Checks scripts without running them, for editors and build servers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct ScriptProblem {
  std::uint32_t code;   // script error code
  const char* text;     // its constant text
  std::uint64_t line;   // of the offending token itself, from 1
  std::uint64_t column; // in bytes, from 1
};

// Reads a whole script with the parser that runs use. `externalNames` are variables that a host would set. Reading ends
// at the first problem, so there is none or one.
std::vector<ScriptProblem> CheckScript(std::string_view text, const std::vector<std::string>& externalNames);
