#include "host/channel/sim/description/FilledText.h"

#include "host/channel/sim/description/Braces.h"
#include "host/support/Text.h"

namespace host {
namespace {

std::string_view Lookup(std::string_view name, const Values& values, const Captures& captures) {
  if (const auto captured = captures.find(name); captured != captures.end())
    return captured->second;
  if (const auto value = values.find(name); value != values.end())
    return value->second;
  return {};
}

bool IsNumberIndex(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

} // namespace

std::string ValuePlace::KeyIn(const Values& values, const Captures& captures) const {
  if (!isElement)
    return name;
  return name + "[" + (isIndexNamed ? std::string(Lookup(index, values, captures)) : index) + "]";
}

std::string_view ValuePlace::Read(const Values& values, const Captures& captures) const {
  const std::string key = KeyIn(values, captures);
  return Lookup(isElement && !values.contains(key) ? name + "[]" : key, values, captures);
}

bool ReadPlace(std::string_view text, std::size_t column, const Pattern* pattern, const Values& values, bool isToSet,
               StatementReader& reader, ValuePlace& place) {
  const auto isKnown = [&](std::string_view name) {
    return (pattern && pattern->HasPiece(name)) || values.contains(name);
  };
  const auto fail = [&](std::string what) {
    reader.Fail(column, std::move(what));
    return false;
  };
  const std::size_t bracket = text.find('[');
  place.name = text.substr(0, bracket);
  place.isElement = bracket != std::string_view::npos;
  if (!IsName(place.name) || (place.isElement && !text.ends_with(']')))
    return fail("expected NAME or NAME[INDEX], found " + Quoted(text));
  if (!place.isElement) {
    if (isToSet ? values.contains(place.name) : isKnown(place.name))
      return true;
    if (values.contains(place.name + "[]"))
      return fail(Quoted(place.name) + " has elements: expected " + place.name + "[INDEX]");
    return fail(std::string("there is no ") + (isToSet || !pattern ? "value " : "captured piece and no value ") +
                Quoted(place.name) + "; a line above would be: value " + place.name + " \"...\"");
  }
  if (!values.contains(place.name + "[]"))
    return fail("there is no value " + Quoted(place.name + "[]") + "; a line above would be: value " + place.name +
                "[] \"...\"");
  place.index = text.substr(bracket + 1, text.size() - bracket - 2);
  place.isIndexNamed = !IsNumberIndex(place.index);
  if (place.isIndexNamed && !isKnown(place.index))
    return fail("the index " + Quoted(place.index) + " is neither a number nor a captured piece or value");
  return true;
}

FilledText FilledText::Read(const QuotedText& text, const Pattern* pattern, const Values& values,
                            StatementReader& reader) {
  FilledText filled;
  for (BracedPart& part : SplitAtBraces(text, reader)) {
    Piece piece{!part.isBraced, std::move(part.text), {}};
    if (!piece.isLiteral && !ReadPlace(piece.literal, part.column, pattern, values, false, reader, piece.place))
      break;
    filled.m_pieces.push_back(std::move(piece));
  }
  return filled;
}

std::string FilledText::Fill(const Values& values, const Captures& captures) const {
  std::string text;
  for (const Piece& piece : m_pieces) {
    text += piece.isLiteral ? piece.literal : piece.place.Read(values, captures);
    if (text.size() > kLongest)
      text.resize(kLongest);
  }
  return text;
}

} // namespace host
