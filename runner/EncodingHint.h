// Scripts that an editor has saved in an encoding that is not theirs, or with a zero byte.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

struct EncodingHint {
  const char* text;
  std::uint64_t line;   // from 1
  std::uint64_t column; // in bytes, from 1
};

// Looks at a script's bytes: UTF-16, a byte-order mark, characters in UTF-8 outside of comments, a zero byte outside of
// string constants. A guess: bytes of another encoding may happen to look like that.
std::optional<EncodingHint> FindEncodingHint(std::string_view script);
