// What a number in a script stands for.
#pragma once

#include "script/value/DataType.h"
#include "script/value/ScriptError.h"

#include <cstdint>
#include <string_view>

struct Literal {
  ScriptError error = kScriptOk; // reported when the literal is evaluated
  DataType type = DataType::kNone;
  std::uint64_t bits = 0; // widened by its type
};

// The text of a number token: digits without their prefix and, behind a ':', the suffix letters U, S (signedness), L
// and H (32, 64 bits). Values beyond 64 bits saturate.
Literal DecimalLiteral(std::string_view token);
Literal HexadecimalLiteral(std::string_view token);
Literal BinaryLiteral(std::string_view token);
