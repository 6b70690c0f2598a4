#include "util/EscapedString.h"

#include "util/HexDigit.h"

#include <optional>
#include <string_view>
#include <utility>

namespace {

// The byte of an escape of one character. \a, \b and \f are digits like the others here, not C's control characters.
std::optional<char> SimpleEscape(char c) {
  switch (c) {
  case '"':
  case '\\':
    return c;
  case 'n':
    return '\n';
  case 't':
    return '\t';
  case 'r':
    return '\r';
  default:
    if (const std::optional<unsigned> digit = HexDigitValue(c))
      return static_cast<char>(*digit);
    return std::nullopt;
  }
}

std::string Quoted(std::string_view message, std::string_view what) {
  return std::string(message).append(" \"").append(what).append("\".");
}

// One pass over one text. Afterwards either the bytes or the error are there.
class EscapedStringReader {
public:
  EscapedStringReader(const char* input, std::size_t length, char terminator)
      : m_input(input), m_length(length), m_terminator(terminator) {}

  bool Read();
  std::string& Bytes() { return m_bytes; }
  std::string& Error() { return m_error; }
  std::size_t Position() const { return m_position; }

private:
  enum class Step { kNext, kDone, kFailed };

  Step ReadPlain(char c);
  Step ReadEscape();
  Step ReadNumber();
  bool AtEnd() const { return m_position >= m_length; }
  Step Append(char c) {
    m_bytes.push_back(c);
    return Step::kNext;
  }
  Step Fail(std::string message) {
    m_error = std::move(message);
    return Step::kFailed;
  }

  const char* m_input;
  std::size_t m_length;
  char m_terminator;
  std::size_t m_position = 0;
  std::string m_bytes;
  std::string m_error;
};

// The end is looked at behind each plain byte, not in front of it: so the zero byte behind the text is read when an
// escape comes last, and ends the text there.
bool EscapedStringReader::Read() {
  Step step = Step::kNext;
  if (m_length == 0)
    step = m_terminator == 0 ? Step::kDone : Fail("String not terminated.");
  while (step == Step::kNext) {
    const char c = m_input[m_position++];
    step = c == '\\' ? ReadEscape() : ReadPlain(c);
  }
  return step == Step::kDone;
}

EscapedStringReader::Step EscapedStringReader::ReadPlain(char c) {
  if (c == m_terminator)
    return Step::kDone;
  if (AtEnd()) {
    if (m_terminator != 0)
      return Fail("String not terminated.");
    m_bytes.push_back(c); // a line break too, in this place
    return Step::kDone;
  }
  if (c == '\r' || c == '\n')
    return Fail("Unallowed line break inside string.");
  return Append(c);
}

EscapedStringReader::Step EscapedStringReader::ReadEscape() {
  if (AtEnd())
    return Fail("Incomplete ESC sequence at end of input.");
  const char c = m_input[m_position++];
  if (c == '(')
    return ReadNumber();
  if (const std::optional<char> byte = SimpleEscape(c))
    return Append(*byte);
  return Fail(Quoted("Invalid ESC sequence", std::string{'\\', c}));
}

// Behind the opening parenthesis. The letter for the base counts as a digit, so "x)" and "b)" are zero.
EscapedStringReader::Step EscapedStringReader::ReadNumber() {
  unsigned value = 0;
  unsigned base = 10;
  bool anyDigit = false;
  for (const std::size_t start = m_position; !AtEnd();) {
    const bool first = m_position == start;
    const char c = m_input[m_position++];
    if (c == ')') {
      return anyDigit ? Append(static_cast<char>(value))
                      : Fail(Quoted("Invalid number in ESC sequence", std::to_string(value)));
    }
    const std::optional<unsigned> digit = HexDigitValue(c);
    if (first && (c == 'x' || c == 'X')) {
      base = 16;
    } else if (first && (c == 'b' || c == 'B')) {
      base = 2;
    } else if (digit && *digit < base) {
      value = value * base + *digit;
    } else {
      return Fail(Quoted("Invalid char in numerical ESC sequence", std::string{c}));
    }
    anyDigit = true;
    if (value > 255)
      return Fail("Number too big in numerical ESC sequence");
  }
  return Fail("Incomplete ESC sequence at end of input.");
}

} // namespace

std::string ParseString(const char* input, std::size_t length, char terminator, std::size_t* endPos,
                        std::string* errorText, int* ok) {
  EscapedStringReader reader(input, length, terminator);
  const bool success = reader.Read();
  if (endPos)
    *endPos = reader.Position();
  if (errorText)
    *errorText = std::move(reader.Error());
  if (ok)
    *ok = success ? 1 : 0;
  return success ? std::move(reader.Bytes()) : std::string();
}
