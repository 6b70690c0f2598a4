#include "script/value/ScriptError.h"

#include <algorithm>
#include <array>
#include <cstdio>

const char* ErrorText(ScriptError error) {
  static constexpr std::array kTexts = {
      "No error",
      "out of memory error",
      "Syntax error",
      "Error in string",
      "Unexpected token",
      "Unknown data type",
      "Unknown object type",
      "Unknown identifier",
      "Wrong number of parameters",
      "Illegal parameter",
      "Type error",
      "Division by 0 error",
      "System function failed",
      "Processing aborted",
  };
  const std::uint32_t errorClass = error >> 28U;
  if (errorClass == 1)
    return "User Error";
  if (errorClass != 0)
    return "Unknown error class";
  return error < kTexts.size() ? kTexts[error] : "Unknown error";
}

void LineAndColumn(std::string_view text, std::uint64_t offset, std::uint64_t* line, std::uint64_t* column) {
  std::string_view before = text.substr(0, std::min<std::uint64_t>(offset, text.size()));
  before = before.substr(0, before.find('\0'));
  *line = static_cast<std::uint64_t>(std::count(before.begin(), before.end(), '\n'));
  // Without a line feed, npos + 1 is 0: the whole text counts.
  *column = before.size() - (before.rfind('\n') + 1);
}

DiagnosticText DiagnosticLine(ScriptError error, std::string_view text, std::uint32_t offset, RunPhase phase) {
  std::uint64_t line = 0;
  std::uint64_t column = 0;
  LineAndColumn(text, offset, &line, &column);
  DiagnosticText result;
  std::snprintf(result.data(), result.size(), "%s near line %llu/column %llu (offset %lu) during %s\n",
                ErrorText(error), static_cast<unsigned long long>(line + 1),
                static_cast<unsigned long long>(column + 1), static_cast<unsigned long>(offset),
                phase == RunPhase::kParsing ? "parsing" : "executing");
  return result;
}
