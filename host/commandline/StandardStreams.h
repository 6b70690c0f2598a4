// Results on standard output, messages on standard error.
#pragma once

#include "host/support/Files.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace host {

// Standard output as a script's sink: every piece goes out at once, byte for byte. [one thread]
class StandardOutput {
public:
  // False once anything could not be written.
  bool Write(std::string_view bytes);
  // As if writing had failed.
  void GiveUp() { m_failed = true; }
  bool Failed() const { return m_failed; }
  // Whether the next byte begins a line.
  bool AtLineStart() const { return m_atLineStart; }

private:
  bool m_failed = false;
  bool m_atLineStart = true;
};

// The exit code of a program whose results went to `output`: 0, or kExitStream, which is told on standard error.
int ExitCodeOf(std::string_view program, const StandardOutput& output);

// Scripts of 4 GiB or more are refused.
inline constexpr std::uint64_t kLongestScript = 0xFFFFFFFF;

// A script from standard input, until its end; no more than the longest.
ReadOutcome ReadStandardInput(std::string& text);

// "PROGRAM: TEXT" on a line of standard error.
void PrintMessage(std::string_view program, std::string_view text);

} // namespace host
