// Variables that a script expects from whoever runs it. It says so in remarks in front of its first statement, a line
// for each:
//
//   # expects: limit int32
#pragma once

#include "host/commandline/Variables.h"

#include <string_view>

namespace host {

struct ExpectedVariables {
  // A remark that tells no variable: where it is in the text, and why.
  struct Malformed {
    std::uint32_t begin;
    std::uint32_t end;
    std::string reason;
  };
  std::vector<Variable> variables; // names and types
  std::vector<Malformed> malformed;
};

// Of a script's text, or of its first bytes.
ExpectedVariables ReadExpectedVariables(std::string_view text);
// The same of a file or, for "-", of what came from standard input. Nothing where it cannot be read, which running it
// will tell.
ExpectedVariables ReadExpectedVariablesOf(const std::string& script, const std::string& input);

// What is missing or of another type among the values given; empty: nothing.
std::string MisfitOf(const ExpectedVariables& expected, const std::vector<Variable>& given);

} // namespace host
