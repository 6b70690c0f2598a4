#include "host/commandline/StandardStreams.h"

#include <array>
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

bool ReadStandardInput(std::string& bytes) {
  std::array<char, 65536> chunk;
  while (const std::size_t count = std::fread(chunk.data(), 1, chunk.size(), stdin))
    bytes.append(chunk.data(), count);
  return std::ferror(stdin) == 0;
}

void PrintMessage(std::string_view program, std::string_view text) {
  std::fprintf(stderr, "%.*s: %.*s\n", static_cast<int>(program.size()), program.data(), static_cast<int>(text.size()),
               text.data());
}

} // namespace host
