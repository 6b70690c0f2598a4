// The variables that a command line hands to a script and prints afterwards.
#pragma once

#include "frame/contract/OndDeviceClient.h"

#include <tl/expected.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace host {

struct Variable {
  std::string name;
  std::uint32_t type = ONX_TYPE_UINT32; // ONX_TYPE_…
  std::uint64_t number = 0;             // of numeric types; negative values in two's complement
  std::string text;                     // of strings
};

// The names of the types, with commas.
std::string VariableTypes();

// The usual name of an ONX_TYPE_….
std::string_view NameOfType(std::uint32_t type);

// A variable of this name and type, without a value. Otherwise says what is wrong.
tl::expected<Variable, std::string> DeclareVariable(std::string_view name, std::string_view type);
// Reads "NAME:TYPE=VALUE". Types are those of the language, in any case; numbers are decimal, hexadecimal (0x1F) or
// binary (0b101), with a sign where the type has one. Otherwise says what is wrong.
tl::expected<Variable, std::string> ParseVariable(const std::string& text);

// Records that set these variables; they point into `variables`.
std::vector<TONXSCRIPTVARIABLE> RecordsToSet(const std::vector<Variable>& variables);
// A record that asks for a variable; it points into `name`.
TONXSCRIPTVARIABLE RecordToGet(const std::string& name);
// The value of a record that was read back, as one line of text: control characters and the backslash of a string are
// written as the language's escapes.
std::string FormatValue(const TONXSCRIPTVARIABLE& record);

} // namespace host
