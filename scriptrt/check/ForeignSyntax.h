// What people write who think in another language, and what it is here.
#pragma once

#include <cstdint>
#include <string_view>

// Where a word stands.
enum class WordPlace : std::uint8_t {
  kName = 1,  // a statement or a value
  kType = 2,  // a type
  kInside = 4 // where an operator, or nothing, is expected
};

// Empty when nothing is known about the word. In any case of letters.
std::string_view HintForWord(std::string_view word, WordPlace place);

struct ForeignSign {
  std::uint32_t begin; // in the text
  std::uint32_t end;
  std::string_view hint; // empty: there is none
};

// About the sign that the character at `position` belongs to.
ForeignSign FindForeignSign(std::string_view text, std::uint32_t position);
