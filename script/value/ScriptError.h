// Error codes of the script language and the line that reports them.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

// Bits 28 to 31 hold the class, the rest the code within it. The first error ends an operation and travels up
// unchanged; being 0 for success, a code also reads as "did this fail?".
enum [[nodiscard]] ScriptError : std::uint32_t{
    kScriptOk = 0,
    kOutOfMemory = 1,
    kSyntaxError = 2,
    kErrorInString = 3,
    kUnexpectedToken = 4,
    kUnknownDataType = 5,
    kUnknownObjectType = 6,
    kUnknownIdentifier = 7,
    kWrongParameterCount = 8,
    kIllegalParameter = 9,
    kTypeError = 10,
    kDivisionByZero = 11,
    kSystemFunctionFailed = 12,
    kProcessingAborted = 13,
    // Ends a run as `exit` does: class "user error", code 0, which is never reported.
    kExitScript = 0x10000000,
};

// The code within its class. 0 means that nothing is to be reported.
constexpr std::uint32_t CodeWithinClass(ScriptError error) {
  return error & 0x0FFFFFFFU;
}

// A constant text, never null.
const char* ErrorText(ScriptError error);

// Line and column of `offset`, both from 0: line feeds before it, bytes since the last one. A zero byte ends the count.
void LineAndColumn(std::string_view text, std::uint64_t offset, std::uint64_t* line, std::uint64_t* column);

enum class RunPhase { kParsing, kExecuting };

// The line that a failed run ends its output with, zero-terminated. `offset` is the start of the token that was read
// last. Allocates nothing: that memory ran out is said too.
using DiagnosticText = std::array<char, 160>;
DiagnosticText DiagnosticLine(ScriptError error, std::string_view text, std::uint32_t offset, RunPhase phase);
