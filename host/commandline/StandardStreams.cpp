#include "host/commandline/StandardStreams.h"

#include "host/commandline/ExitCodes.h"

#include <cstdio>

namespace host {

bool StandardOutput::Write(std::string_view bytes) {
  if (bytes.empty())
    return !m_failed;
  m_atLineStart = bytes.back() == '\n';
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size() && std::fflush(stdout) == 0;
  m_failed = m_failed || !written;
  return !m_failed;
}

int ExitCodeOf(std::string_view program, const StandardOutput& output) {
  if (!output.Failed())
    return 0;
  PrintMessage(program, "standard output cannot be written");
  return kExitStream;
}

ReadOutcome ReadStandardInput(std::string& text) {
  return ReadToEnd(stdin, kLongestScript, text);
}

void PrintMessage(std::string_view program, std::string_view text) {
  std::fprintf(stderr, "%.*s: %.*s\n", static_cast<int>(program.size()), program.data(), static_cast<int>(text.size()),
               text.data());
}

} // namespace host
