#include "host/channel/replay/Difference.h"

#include "host/support/HexText.h"
#include "host/support/Text.h"
#include "host/trace/TraceText.h"

#include <algorithm>

namespace host {
namespace {

constexpr std::size_t kShownBytes = 60;
constexpr std::size_t kBytesBefore = 12; // that are the same, in front of the first that differs

// As scripts write texts.
std::string Escaped(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) {
    if (c == '\r')
      text += "\\r";
    else if (c == '\n')
      text += "\\n";
    else if (c < ' ' || c > '~')
      text += ByteEscape(c);
    else if (c == '"' || c == '\\')
      text.append(1, '\\').append(1, c);
    else
      text += c;
  }
  return text;
}

// All of few bytes, and of many those around the place.
std::string BytesText(std::string_view bytes, std::size_t place) {
  if (bytes.size() <= kShownBytes)
    return " " + Quoted(Escaped(bytes));
  const std::size_t begin = place > kBytesBefore ? std::min(place - kBytesBefore, bytes.size()) : 0;
  return " " + std::to_string(bytes.size()) + " bytes, from byte " + std::to_string(begin) + " on " +
         Quoted(Escaped(bytes.substr(begin, kShownBytes)));
}

std::string CallText(const TraceCall& call, std::size_t place) {
  const TraceShape& shape = call.Shape();
  std::string text(call.Name());
  if (!shape.text.empty())
    text += " " + Quoted(call.text);
  for (std::size_t i = 0; i < shape.given; ++i)
    text.append(" ").append(shape.numbers[i]).append(" ").append(std::to_string(call.numbers[i]));
  text += ContentsText(call);
  if (shape.sends)
    text += BytesText(call.bytes, place);
  else if (!call.bytes.empty())
    text += ", which found" + BytesText(call.bytes, 0);
  return text;
}

std::size_t FirstDifference(std::string_view one, std::string_view other) {
  const auto end = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
  return static_cast<std::size_t>(end.first - one.begin());
}

std::string Sides(const TraceCall* tape, const TraceCall* run) {
  const std::size_t place = tape && run ? FirstDifference(tape->bytes, run->bytes) : 0;
  return "\n  tape: " + (tape ? CallText(*tape, place) : std::string("nothing more")) +
         "\n  run:  " + (run ? CallText(*run, place) : std::string("nothing more"));
}

} // namespace

std::string DifferenceText(const std::string& file, const Tape::Step* step, const TraceCall* run) {
  if (!step)
    return file + ": the tape has ended, and the run goes on" + Sides(nullptr, run);
  const std::string place = file + ":" + std::to_string(step->line) + ": ";
  const std::string what = run ? "the run differs from the tape" : "the run has ended, and the tape goes on";
  return place + what + " at record " + std::to_string(step->record) + Sides(step->call, run);
}

} // namespace host
