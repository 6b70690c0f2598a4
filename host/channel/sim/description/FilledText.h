// A text with gaps, which captured pieces and kept values fill: "OK {n} {level[n]}".
#pragma once

#include "host/channel/sim/description/Pattern.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// By their names; the element X of NAME is "NAME[X]", and what elements are at the start is "NAME[]".
using Values = std::map<std::string, std::string, std::less<>>;

// What the name of a value stands for: itself, or one of its elements.
struct ValuePlace {
  std::string name;
  bool isElement = false;
  bool isIndexNamed = false; // a captured piece or another value tells which one
  std::string index;

  std::string KeyIn(const Values& values, const Captures& captures) const;
  // What is there. A captured piece goes before a value of its name; an element that was never set is what all of them
  // are at the start.
  std::string_view Read(const Values& values, const Captures& captures) const;
};

class FilledText {
public:
  static constexpr std::size_t kLongest = 64 << 10; // bytes, filled; what comes on top is left out

  // `pattern` supplies the captured pieces, null: there are none; `values` are those that are known. A mistake goes to
  // the reader.
  static FilledText Read(const QuotedText& text, const Pattern* pattern, const Values& values, StatementReader& reader);

  std::string Fill(const Values& values, const Captures& captures) const;

private:
  struct Piece {
    bool isLiteral;
    std::string literal;
    ValuePlace place;
  };
  std::vector<Piece> m_pieces;
};

// Reads NAME or NAME[INDEX], INDEX being digits or a name. False, and the reader has the mistake, when nothing is known
// of it. Only values, no captured piece, can be `isToSet`.
bool ReadPlace(std::string_view text, std::size_t column, const Pattern* pattern, const Values& values, bool isToSet,
               StatementReader& reader, ValuePlace& place);

} // namespace host
