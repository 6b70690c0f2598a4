#include "util/FileMode.h"

#include "frame/contract/OndDeviceClient.h"
#include "util/AsciiCase.h"

namespace {

constexpr const char* kBitReverse = "bit reverse";
constexpr const char* kProgram = "program";

} // namespace

const char* FileModeWord(std::uint32_t mode) {
  switch (mode) {
  case OND_FILE_BIT_REVERSE:
    return kBitReverse;
  case OND_FILE_PROGRAM:
    return kProgram;
  default:
    return "normal";
  }
}

std::uint32_t FileModeOf(std::string_view word) {
  if (EqualsIgnoringCase(word, kBitReverse)) {
    return OND_FILE_BIT_REVERSE;
  }
  return EqualsIgnoringCase(word, kProgram) ? OND_FILE_PROGRAM : OND_FILE_NORMAL;
}
