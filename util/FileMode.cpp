#include "util/FileMode.h"

#include "frame/contract/OndDeviceClient.h"

#include <algorithm>

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

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](char x, char y) { return lower(x) == lower(y); });
}
