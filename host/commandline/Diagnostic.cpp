#include "host/commandline/Diagnostic.h"

#include "host/support/StreamSetup.h"
#include "host/support/Utf8.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace host {
namespace {

constexpr std::string_view kBold = "\x1B[1m";
constexpr std::string_view kRed = "\x1B[1;31m";
constexpr std::string_view kBlue = "\x1B[34m";
constexpr std::string_view kCyan = "\x1B[36m";
constexpr std::string_view kPlain = "\x1B[0m";
constexpr std::string_view kGap = "      ";

std::string Coloured(std::string_view text, std::string_view colour, Colours colours) {
  if (colours == Colours::kNone || text.empty())
    return std::string(text);
  return std::string(colour) + std::string(text) + std::string(kPlain);
}

Colours ColoursIf(bool isTerminal) {
  const char* const no = std::getenv("NO_COLOR");
  const char* const terminal = std::getenv("TERM");
  const bool isWanted = (!no || *no == '\0') && terminal && *terminal != '\0' && std::string_view(terminal) != "dumb";
  return isTerminal && isWanted ? Colours::kTerminal : Colours::kNone;
}

bool ContinuesCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80;
}

// What takes one place on the screen.
struct Cell {
  std::size_t position; // of its first byte in the text
  std::string shown;
};

// The part of a line that is shown, and where in the text it is.
struct Part {
  std::size_t begin;
  std::size_t end;
  bool isCutInFront = false;
  bool isCutBehind = false;
};

Part PartAround(std::string_view text, std::size_t position) {
  constexpr std::size_t kLongestLine = 120; // bytes; of longer ones:
  constexpr std::size_t kInFront = 70;
  constexpr std::size_t kBehind = 50;
  const std::size_t lineEnd = text.substr(0, position).find_last_of("\r\n");
  Part part{.begin = lineEnd == std::string_view::npos ? 0 : lineEnd + 1,
            .end = std::min(text.find_first_of("\r\n", position), text.size())};
  if (part.end - part.begin <= kLongestLine)
    return part;
  const std::size_t least = position > kInFront ? position - kInFront : 0;
  const std::size_t most = std::min(position + kBehind, text.size());
  part.isCutInFront = part.begin < least;
  part.isCutBehind = part.end > most;
  part.begin = std::max(part.begin, least);
  part.end = std::min(part.end, most);
  while (part.isCutInFront && part.begin < position && ContinuesCharacter(text[part.begin]))
    ++part.begin;
  while (part.isCutBehind && part.end > position && ContinuesCharacter(text[part.end]))
    --part.end;
  return part;
}

std::vector<Cell> CellsOf(std::string_view text, const Part& part) {
  const std::string_view line = text.substr(part.begin, part.end - part.begin);
  const bool isUtf8 = ToUtf8(line) == line;
  std::vector<Cell> cells;
  for (std::size_t at = 0; at < line.size();) {
    std::size_t length = 1;
    while (isUtf8 && at + length < line.size() && ContinuesCharacter(line[at + length]))
      ++length;
    const auto first = static_cast<unsigned char>(line[at]);
    const bool isControl = (first < 0x20 && first != '\t') || first == 0x7F ||
                           (isUtf8 && first == 0xC2 && length == 2 && static_cast<unsigned char>(line[at + 1]) < 0xA0);
    cells.push_back({part.begin + at, isControl ? "?"
                                      : isUtf8  ? std::string(line.substr(at, length))
                                                : ToUtf8(line.substr(at, length))});
    at += length;
  }
  return cells;
}

std::string LineNumber(std::string_view text, std::uint32_t position) {
  const std::string_view before = text.substr(0, position);
  return std::to_string(std::count(before.begin(), before.end(), '\n') + 1);
}

} // namespace

Colours ColoursOfOutput() {
  return ColoursIf(IsOutputTerminal());
}
Colours ColoursOfMessages() {
  return ColoursIf(IsMessagesTerminal());
}

std::string PlaceText(std::string_view file, std::string_view text, std::uint32_t position) {
  const std::string_view before = text.substr(0, position);
  const std::size_t column = before.size() - (before.rfind('\n') + 1) + 1;
  return std::string(file) + ":" + LineNumber(text, position) + ":" + std::to_string(column);
}

std::string Excerpt(std::string_view text, std::uint32_t position, MarkedRange mark, std::string_view remark,
                    Colours colours) {
  const std::size_t place = std::min<std::size_t>(position, text.size());
  const Part part = PartAround(text, place);
  std::string line = part.isCutInFront ? "..." : "";
  std::string below(line.size(), ' ');
  std::string marks;
  for (const Cell& cell : CellsOf(text, part)) {
    line += cell.shown;
    const bool isMarked = cell.position >= mark.begin && cell.position < mark.end;
    if (cell.position == place)
      marks += '^';
    else if (isMarked)
      marks += '~';
    else if (marks.empty())
      below += cell.shown == "\t" ? '\t' : ' ';
  }
  if (marks.empty())
    marks = "^"; // behind the line
  line += part.isCutBehind ? "..." : "";
  std::string number = LineNumber(text, position);
  if (number.size() < kGap.size() - 1)
    number.insert(0, kGap.size() - 1 - number.size(), ' ');
  const std::string_view bar = " | ";
  const std::string gap(number.size(), ' ');
  if (!remark.empty())
    marks += " " + std::string(remark);
  return Coloured(number + std::string(bar), kBlue, colours) + line + "\n" +
         Coloured(gap + std::string(bar), kBlue, colours) + below + Coloured(marks, kRed, colours) + "\n";
}

std::string DiagnosticText(const Diagnostic& diagnostic, std::string_view text, Colours colours) {
  std::string result = Coloured(PlaceText(diagnostic.file, text, diagnostic.position) + ":", kBold, colours) + " " +
                       Coloured(diagnostic.kind + ":", kRed, colours) + " " + diagnostic.message + "\n";
  const auto related = [&] {
    return Excerpt(text, diagnostic.related->range.begin, diagnostic.related->range, diagnostic.related->remark,
                   colours);
  };
  const bool isInFront = diagnostic.related && diagnostic.related->range.begin < diagnostic.position;
  if (isInFront)
    result += related();
  result += Excerpt(text, diagnostic.position, diagnostic.mark, {}, colours);
  if (diagnostic.related && !isInFront)
    result += related();
  if (!diagnostic.hint.empty())
    result += std::string(kGap) + Coloured("= ", kBlue, colours) + Coloured(diagnostic.hint, kCyan, colours) + "\n";
  return result;
}

} // namespace host
