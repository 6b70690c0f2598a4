#include "host/lineedit/posix/KeyDecoder.h"

#include <string_view>
#include <utility>

namespace host {
namespace {

constexpr char kEscape = '\x1B';
constexpr std::size_t kLongestSequence = 32; // bytes; more is no key

struct Sequence {
  std::string_view bytes; // behind the escape character
  KeyKind kind;
};
// What xterm, the Linux console, rxvt and their relatives send.
constexpr Sequence kSequences[] = {
    {"[A", KeyKind::kUp},           {"OA", KeyKind::kUp},           {"[B", KeyKind::kDown},
    {"OB", KeyKind::kDown},         {"[C", KeyKind::kRight},        {"OC", KeyKind::kRight},
    {"[D", KeyKind::kLeft},         {"OD", KeyKind::kLeft},         {"[H", KeyKind::kHome},
    {"OH", KeyKind::kHome},         {"[1~", KeyKind::kHome},        {"[7~", KeyKind::kHome},
    {"[F", KeyKind::kEnd},          {"OF", KeyKind::kEnd},          {"[4~", KeyKind::kEnd},
    {"[8~", KeyKind::kEnd},         {"[3~", KeyKind::kDelete},      {"[1;5C", KeyKind::kWordRight},
    {"[1;5D", KeyKind::kWordLeft},  {"Oc", KeyKind::kWordRight},    {"Od", KeyKind::kWordLeft},
    {"[1;3C", KeyKind::kWordRight}, {"[1;3D", KeyKind::kWordLeft},  {"f", KeyKind::kWordRight},
    {"b", KeyKind::kWordLeft},      {"\x7F", KeyKind::kDeleteWord},
};

Key KeyOfSequence(std::string_view bytes) {
  for (const Sequence& each : kSequences) {
    if (bytes.substr(1) == each.bytes)
      return {each.kind, {}};
  }
  return {};
}

// Whether these bytes, which begin with the escape character, are a whole sequence.
bool IsWhole(std::string_view bytes) {
  if (bytes.size() < 2)
    return false;
  if (bytes[1] == 'O')
    return bytes.size() == 3;
  if (bytes[1] != '[')
    return true;
  return bytes.size() > 2 && bytes.back() >= '@' && bytes.back() <= '~';
}

std::size_t LengthBegunBy(char first) {
  const auto byte = static_cast<unsigned char>(first);
  return byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
}

bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80;
}

} // namespace

std::optional<Key> KeyDecoder::Feed(char byte) {
  if (byte == kEscape || (IsWithin() && m_begun.front() != kEscape && !IsContinuation(byte)))
    m_begun.clear(); // what had begun was none
  if (!IsWithin() && byte != kEscape && (static_cast<unsigned char>(byte) < 0x20 || byte == '\x7F'))
    return KeyOfControl(byte);
  m_begun += byte;
  if (m_begun.front() == kEscape) {
    if (m_begun.size() > kLongestSequence)
      m_begun.clear();
    return IsWhole(m_begun) ? std::optional(KeyOfSequence(std::exchange(m_begun, {}))) : std::nullopt;
  }
  if (m_begun.size() < LengthBegunBy(m_begun.front()))
    return std::nullopt;
  return Key{KeyKind::kText, std::exchange(m_begun, {})};
}

} // namespace host
