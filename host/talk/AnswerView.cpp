#include "host/talk/AnswerView.h"

#include "host/support/HexText.h"
#include "host/support/Utf8.h"

#include <utility>

namespace host {
namespace {

constexpr std::size_t kTabWidth = 8;

unsigned Value(char byte) {
  return static_cast<unsigned char>(byte);
}

bool IsControl(char byte) {
  return Value(byte) < 0x20 || byte == '\x7F';
}

bool IsContinuation(char byte) {
  return (Value(byte) & 0xC0U) == 0x80;
}

// Of the character that this byte begins; 0 when it begins none of several bytes.
std::size_t LengthBegunBy(char byte) {
  const unsigned value = Value(byte);
  return value >= 0xC2 && value < 0xE0 ? 2 : value >= 0xE0 && value < 0xF0 ? 3 : value >= 0xF0 && value < 0xF5 ? 4 : 0;
}

// U+0080 to U+009F, which terminals take as commands, in UTF-8.
bool IsC1(std::string_view character) {
  return character.size() == 2 && character[0] == '\xC2' && Value(character[1]) < 0xA0;
}

} // namespace

AnswerView::AnswerView(ViewMode mode, std::function<std::string()> lineStart)
    : m_mode(mode), m_lineStart(std::move(lineStart)) {}

std::string AnswerView::Feed(std::string_view bytes) {
  for (const char byte : bytes) {
    switch (m_mode) {
    case ViewMode::kRaw:
      AddText({&byte, 1}, 1);
      m_isWithinLine = byte != '\n';
      break;
    case ViewMode::kText:
      FeedText(byte);
      break;
    case ViewMode::kHex:
      m_held += byte;
      if (m_held.size() == kBytesInHexLine)
        m_text += Pause();
      break;
    }
  }
  return std::exchange(m_text, {});
}

std::string AnswerView::Pause() {
  if (m_mode == ViewMode::kHex && !m_held.empty()) {
    AddText(HexLine(std::exchange(m_held, {})), 0);
    EndLine();
  }
  return std::exchange(m_text, {});
}

std::string AnswerView::Break() {
  m_text = Pause();
  if (m_mode == ViewMode::kText)
    GiveUpCharacter();
  if (m_isWithinLine)
    EndLine();
  return std::exchange(m_text, {});
}

void AnswerView::FeedText(char byte) {
  const bool isAfterCr = std::exchange(m_lastWasCr, byte == '\r');
  if (!m_held.empty() && !IsContinuation(byte))
    GiveUpCharacter();
  if (byte == '\r' || byte == '\n') {
    if (byte == '\r' || !isAfterCr)
      EndLine();
  } else if (byte == '\t') {
    const std::size_t blanks = kTabWidth - m_column % kTabWidth;
    AddText(std::string(blanks, ' '), blanks);
  } else if (IsControl(byte)) {
    AddText(ByteEscape(byte), ByteEscape(byte).size());
  } else {
    FeedCharacter(byte);
  }
}

void AnswerView::FeedCharacter(char byte) {
  m_held += byte;
  const std::size_t length = LengthBegunBy(m_held.front());
  if (m_held.size() < length)
    return;
  if (length == 0 || CharacterLength(m_held) != length || IsC1(m_held))
    return GiveUpCharacter();
  AddText(std::exchange(m_held, {}), 1);
}

void AnswerView::GiveUpCharacter() {
  for (const char byte : std::exchange(m_held, {})) {
    const std::string character = ToUtf8({&byte, 1});
    const bool isC1 = IsC1(character);
    AddText(isC1 ? ByteEscape(byte) : character, isC1 ? ByteEscape(byte).size() : 1);
  }
}

void AnswerView::AddText(std::string_view text, std::size_t columns) {
  if (!std::exchange(m_isWithinLine, true) && m_lineStart)
    m_text += m_lineStart();
  m_text += text;
  m_column += columns;
}

// An empty line is one too.
void AnswerView::EndLine() {
  AddText("\n", 0);
  m_isWithinLine = false;
  m_column = 0;
}

} // namespace host
