// What a command looks like: "VOLT {volts:number}".
#pragma once

#include "host/channel/sim/description/StatementReader.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// The captured pieces of a command, by their names.
using Captures = std::map<std::string, std::string, std::less<>>;

struct PatternPiece {
  enum class Kind {
    kLiteral,
    kWord,   // {NAME}: bytes without a blank, one at least
    kText,   // {NAME:text}: any bytes, or none
    kNumber, // {NAME:number}: with sign, fraction and exponent if need be
    kRange,  // {NAME:LOW..HIGH}: a number without fraction
  };
  Kind kind;
  std::string text; // the literal, or the name
  std::int64_t low = 0;
  std::int64_t high = 0;
};

class Pattern {
public:
  // A mistake goes to the reader.
  static Pattern Read(const QuotedText& text, StatementReader& reader);

  // Whether the whole line looks like that. Words and numbers take as much of it as they can, texts as little.
  bool Matches(std::string_view line, bool ignoresCase, Captures& captures) const;
  bool HasPiece(std::string_view name) const;

private:
  std::vector<PatternPiece> m_pieces;
};

} // namespace host
