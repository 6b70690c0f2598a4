// One line of a device file, read word by word.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

struct Mistake {
  std::size_t line;
  std::size_t column; // in bytes; both from 1
  std::string text;
};

// A text in quotation marks, its escapes decoded.
struct QuotedText {
  struct Byte {
    char value;
    bool isEscape; // and so never means anything but itself
    std::size_t column;
  };
  std::vector<Byte> bytes;
  std::size_t column = 1; // of the opening quotation mark

  std::string Plain() const;
};

// Words stand apart by blanks; numbers, quotation marks, brackets and percent signs need none. Behind # is a remark.
// The first mistake counts; from there on nothing is left to read, and whatever is asked for is empty or zero.
class StatementReader {
public:
  StatementReader(std::string_view text, std::size_t line) : m_text(text), m_line(line) {}

  // Where the next word begins.
  std::size_t Column();
  bool AtEnd();
  // Takes the next word when it is this one.
  bool Take(std::string_view word);
  void Expect(std::string_view word);
  // Takes a name: letters, digits and "_", no digit in front.
  std::string Name(std::string_view what);
  // Takes a name or digits.
  std::string Index();
  // Takes a number without fraction.
  std::uint64_t Number(std::string_view what, std::uint64_t low, std::uint64_t high);
  std::int64_t SignedNumber(std::string_view what, std::int64_t low, std::int64_t high);
  // Takes a number, which may have a fraction.
  double Fraction(std::string_view what, double low, double high);
  QuotedText Quote(std::string_view what);
  // Whatever is left is too much.
  void ExpectEnd();

  void FailExpecting(const std::string& what); // in place of the next word
  void Fail(std::size_t column, std::string text);
  bool HasFailed() const { return m_mistake.has_value(); }
  const std::optional<Mistake>& Failure() const { return m_mistake; }

private:
  std::string_view Peek();
  void Advance(std::size_t count);
  template <class Value>
  Value Between(std::string_view what, Value low, Value high);

  const std::string_view m_text;
  const std::size_t m_line;
  std::size_t m_position = 0;
  std::optional<Mistake> m_mistake;
};

// A letter or "_", or behind the first a digit.
bool IsNameByte(char c, bool first);

} // namespace host
