#include "platform/LargeMemory.h"
#include "platform/Platform.h"

#include <algorithm>

namespace platform {

// Through a buffer that stays in the processor's cache: a text that is made in its full size is zeroed first, only to
// be read over.
std::string File::ReadText(std::size_t count) {
  constexpr std::size_t kPiece = std::size_t{128} * 1024;
  std::string text;
  text.reserve(count);
  ExpectFilling(text.data(), count);
  const auto buffer = std::make_unique_for_overwrite<char[]>(std::min(count, kPiece));
  while (text.size() < count) {
    const std::size_t read = Read(buffer.get(), std::min(count - text.size(), kPiece));
    if (read == 0)
      break;
    text.append(buffer.get(), read);
  }
  return text;
}

std::string File::ReadToEnd(std::size_t limit) {
  constexpr std::size_t kPiece = std::size_t{64} * 1024;
  std::string text;
  while (text.size() < limit) {
    const std::string piece = ReadText(std::min(limit - text.size(), kPiece));
    if (piece.empty())
      break;
    text += piece;
  }
  return text;
}

} // namespace platform
