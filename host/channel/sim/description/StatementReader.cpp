#include "host/channel/sim/description/StatementReader.h"

#include "host/support/Escape.h"
#include "host/support/Text.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <sstream>

namespace host {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kSymbols = "\"[]%#";
constexpr std::string_view kNumberBytes = "0123456789.";
constexpr std::size_t kLongestShown = 40;

bool BeginsNumber(std::string_view text) {
  if (text.starts_with('-') || text.starts_with('+'))
    text.remove_prefix(1);
  return !text.empty() && text.front() >= '0' && text.front() <= '9';
}

// The word at the head of a text that begins with one.
std::string_view FirstWord(std::string_view text) {
  if (kSymbols.find(text.front()) != std::string_view::npos)
    return text.substr(0, 1);
  if (BeginsNumber(text))
    return text.substr(0, text.find_first_not_of(kNumberBytes, 1));
  return text.substr(0, text.find_first_of(std::string(kBlanks) + std::string(kSymbols)));
}

// A word as a message shows it.
std::string Shown(std::string_view word) {
  std::string text(word.substr(0, kLongestShown));
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7F')
      c = '?';
  }
  return Quoted(text + (word.size() > kLongestShown ? "..." : ""));
}

template <class Value>
std::string RangeText(std::string_view what, Value low, Value high) {
  std::ostringstream text;
  text << what << " (" << low;
  if (high < std::numeric_limits<Value>::max() / 2) // beyond, only nonsense is too large
    text << " to " << high << ")";
  else
    text << " or more)";
  return text.str();
}

} // namespace

std::string QuotedText::Plain() const {
  std::string plain;
  for (const Byte& byte : bytes)
    plain += byte.value;
  return plain;
}

bool IsNameByte(char c, bool first) {
  const char lower = ToLowerAscii(c);
  return (lower >= 'a' && lower <= 'z') || c == '_' || (!first && c >= '0' && c <= '9');
}

std::string_view StatementReader::Peek() {
  const std::size_t begin = m_text.find_first_not_of(kBlanks, m_position);
  if (HasFailed() || begin == std::string_view::npos || m_text[begin] == '#') {
    m_position = std::min(begin, m_text.size());
    return {};
  }
  m_position = begin;
  return FirstWord(m_text.substr(begin));
}

void StatementReader::Advance(std::size_t count) {
  m_position += count;
}

std::size_t StatementReader::Column() {
  Peek();
  return m_position + 1;
}

bool StatementReader::AtEnd() {
  return Peek().empty();
}

bool StatementReader::Take(std::string_view word) {
  const std::string_view next = Peek();
  if (!EqualIgnoringCase(next, word))
    return false;
  Advance(next.size());
  return true;
}

void StatementReader::Expect(std::string_view word) {
  if (!Take(word))
    FailExpecting(Quoted(word));
}

std::string StatementReader::Name(std::string_view what) {
  const std::string_view next = Peek();
  std::size_t length = 0;
  while (length < next.size() && IsNameByte(next[length], length == 0))
    ++length;
  if (length == 0 || length != next.size()) {
    FailExpecting(std::string(what) + " (letters, digits and _)");
    return {};
  }
  Advance(length);
  return std::string(next);
}

std::string StatementReader::Index() {
  const std::string_view next = Peek();
  if (next.empty() || next.find_first_not_of("0123456789") != std::string_view::npos)
    return Name("an index, a number or a name");
  Advance(next.size());
  return std::string(next);
}

template <class Value>
Value StatementReader::Between(std::string_view what, Value low, Value high) {
  std::string_view next = Peek();
  const std::size_t length = next.size();
  if (next.starts_with('+'))
    next.remove_prefix(1);
  Value value{};
  const auto [end, status] = std::from_chars(next.data(), next.data() + next.size(), value);
  if (next.empty() || status != std::errc() || end != next.data() + next.size() || value < low || value > high) {
    FailExpecting(RangeText(what, low, high));
    return {};
  }
  Advance(length);
  return value;
}

std::uint64_t StatementReader::Number(std::string_view what, std::uint64_t low, std::uint64_t high) {
  return Between(what, low, high);
}

std::int64_t StatementReader::SignedNumber(std::string_view what, std::int64_t low, std::int64_t high) {
  return Between(what, low, high);
}

double StatementReader::Fraction(std::string_view what, double low, double high) {
  return Between(what, low, high);
}

QuotedText StatementReader::Quote(std::string_view what) {
  QuotedText quoted;
  if (Peek() != "\"") {
    FailExpecting(std::string(what) + " in quotation marks");
    return {};
  }
  quoted.column = m_position + 1;
  std::string_view rest = m_text.substr(m_position + 1);
  while (!rest.empty() && rest.front() != '"') {
    const std::size_t column = m_text.size() - rest.size() + 1;
    char value = rest.front();
    const bool isEscape = value == '\\';
    rest.remove_prefix(1);
    if (isEscape) {
      const auto byte = TakeEscape(rest);
      if (!byte) {
        Fail(column, byte.error());
        return {};
      }
      value = *byte;
    }
    quoted.bytes.push_back({value, isEscape, column});
  }
  if (rest.empty()) {
    Fail(m_text.size() + 1, "expected the closing quotation mark, found the end of the line");
    return {};
  }
  m_position = m_text.size() - rest.size() + 1;
  return quoted;
}

void StatementReader::ExpectEnd() {
  if (!AtEnd())
    FailExpecting("the end of the line");
}

void StatementReader::FailExpecting(const std::string& what) {
  const std::string_view next = Peek();
  Fail(m_position + 1, "expected " + what + ", found " + (next.empty() ? "the end of the line" : Shown(next)));
}

void StatementReader::Fail(std::size_t column, std::string text) {
  if (!m_mistake)
    m_mistake = Mistake{m_line, column, std::move(text)};
}

} // namespace host
