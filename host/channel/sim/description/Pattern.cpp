#include "host/channel/sim/description/Pattern.h"

#include "host/channel/sim/description/Braces.h"
#include "host/support/Text.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace host {
namespace {

// Of literals and captured pieces; so many are found in a long command before anybody notices.
constexpr std::size_t kMostPieces = 32;

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

// How many bytes at the head of `text` are a number; 0: none.
std::size_t NumberLength(std::string_view text) {
  const std::size_t sign = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
  double value = 0;
  const auto [end, status] =
      std::from_chars(text.data() + std::min(sign, text.size()), text.data() + text.size(), value);
  const bool isDigit = text.size() > sign && ((text[sign] >= '0' && text[sign] <= '9') || text[sign] == '.');
  return isDigit && status != std::errc::invalid_argument ? static_cast<std::size_t>(end - text.data()) : 0;
}

bool IsNumberPart(std::string_view text) {
  return !text.empty() && NumberLength(text) == text.size();
}

bool IsInRange(std::string_view text, const PatternPiece& piece) {
  std::int64_t value = 0;
  text.remove_prefix(text.starts_with('+') && text.size() > 1 && text[1] != '-' ? 1 : 0);
  return ParseNumber(text, value) && value >= piece.low && value <= piece.high;
}

// One line against one pattern, with what has turned out not to fit, so that no place is tried twice.
class Matcher {
public:
  Matcher(const std::vector<PatternPiece>& pieces, std::string_view line, bool ignoresCase)
      : m_pieces(pieces), m_line(line), m_ignoresCase(ignoresCase), m_lengths(pieces.size()),
        m_failed((pieces.size() + 1) * (line.size() + 1)) {}

  bool FitsFrom(std::size_t piece, std::size_t position) {
    if (piece == m_pieces.size())
      return position == m_line.size();
    const std::size_t place = piece * (m_line.size() + 1) + position;
    if (m_failed[place])
      return false;
    const std::size_t longest = LongestAt(m_pieces[piece], position);
    const bool fromShort = m_pieces[piece].kind == PatternPiece::Kind::kText;
    for (std::size_t i = 0; i <= longest; ++i) {
      const std::size_t length = fromShort ? i : longest - i;
      if (!Fits(m_pieces[piece], m_line.substr(position, length)))
        continue;
      m_lengths[piece] = length;
      if (FitsFrom(piece + 1, position + length))
        return true;
    }
    m_failed[place] = true;
    return false;
  }

  const std::vector<std::size_t>& Lengths() const { return m_lengths; }

private:
  // More bytes than this are not worth a try.
  std::size_t LongestAt(const PatternPiece& piece, std::size_t position) const {
    const std::string_view rest = m_line.substr(position);
    switch (piece.kind) {
    case PatternPiece::Kind::kLiteral:
      return std::min(piece.text.size(), rest.size());
    case PatternPiece::Kind::kText:
      return rest.size();
    case PatternPiece::Kind::kNumber:
    case PatternPiece::Kind::kRange:
      return NumberLength(rest);
    case PatternPiece::Kind::kWord:
      break;
    }
    return static_cast<std::size_t>(std::find_if(rest.begin(), rest.end(), IsBlank) - rest.begin());
  }

  bool Fits(const PatternPiece& piece, std::string_view text) const {
    switch (piece.kind) {
    case PatternPiece::Kind::kLiteral:
      return m_ignoresCase ? EqualIgnoringCase(text, piece.text) : text == piece.text;
    case PatternPiece::Kind::kWord:
      return !text.empty();
    case PatternPiece::Kind::kText:
      return true;
    case PatternPiece::Kind::kNumber:
      return IsNumberPart(text);
    case PatternPiece::Kind::kRange:
      return IsInRange(text, piece);
    }
    return false;
  }

  const std::vector<PatternPiece>& m_pieces;
  const std::string_view m_line;
  const bool m_ignoresCase;
  std::vector<std::size_t> m_lengths;
  std::vector<bool> m_failed; // by piece and position
};

// LOW..HIGH
bool ReadRange(std::string_view text, PatternPiece& piece) {
  const std::size_t dots = text.find("..");
  return dots != std::string_view::npos && ParseNumber(text.substr(0, dots), piece.low) &&
         ParseNumber(text.substr(dots + 2), piece.high) && piece.low <= piece.high;
}

std::optional<PatternPiece> ReadPiece(std::string_view inside) {
  const std::size_t colon = inside.find(':');
  PatternPiece piece{PatternPiece::Kind::kWord, std::string(inside.substr(0, colon))};
  if (!IsName(piece.text))
    return std::nullopt;
  if (colon == std::string_view::npos)
    return piece;
  const std::string_view kind = inside.substr(colon + 1);
  if (kind == "text")
    piece.kind = PatternPiece::Kind::kText;
  else if (kind == "number")
    piece.kind = PatternPiece::Kind::kNumber;
  else if (ReadRange(kind, piece))
    piece.kind = PatternPiece::Kind::kRange;
  else
    return std::nullopt;
  return piece;
}

} // namespace

Pattern Pattern::Read(const QuotedText& text, StatementReader& reader) {
  Pattern pattern;
  for (const BracedPart& part : SplitAtBraces(text, reader)) {
    if (!part.isBraced) {
      pattern.m_pieces.push_back({PatternPiece::Kind::kLiteral, part.text});
    } else if (auto piece = ReadPiece(part.text); !piece) {
      reader.Fail(part.column, "expected {NAME}, {NAME:text}, {NAME:number} or {NAME:LOW..HIGH}, found {" + part.text +
                                   "}; a brace alone is \\(x7B)");
    } else if (pattern.HasPiece(piece->text)) {
      reader.Fail(part.column, "there is already a piece " + Quoted(piece->text) + " in this pattern");
    } else if (pattern.m_pieces.size() >= kMostPieces) {
      reader.Fail(part.column, "a pattern has too many pieces");
    } else {
      pattern.m_pieces.push_back(std::move(*piece));
    }
  }
  return pattern;
}

bool Pattern::HasPiece(std::string_view name) const {
  return std::any_of(m_pieces.begin(), m_pieces.end(), [&](const PatternPiece& piece) {
    return piece.kind != PatternPiece::Kind::kLiteral && piece.text == name;
  });
}

bool Pattern::Matches(std::string_view line, bool ignoresCase, Captures& captures) const {
  Matcher matcher(m_pieces, line, ignoresCase);
  if (!matcher.FitsFrom(0, 0))
    return false;
  captures.clear();
  for (std::size_t i = 0; i < m_pieces.size(); ++i) {
    const std::size_t length = matcher.Lengths()[i];
    if (m_pieces[i].kind != PatternPiece::Kind::kLiteral)
      captures[m_pieces[i].text] = line.substr(0, length);
    line.remove_prefix(length);
  }
  return true;
}

} // namespace host
