#include "host/lineedit/LineBuffer.h"

#include "host/support/Utf8.h"

namespace host {

void LineBuffer::Set(std::string_view text) {
  m_text = text;
  m_cursor = text.size();
}

bool LineBuffer::Apply(const Key& key) {
  switch (key.kind) {
  case KeyKind::kText:
    m_text.insert(m_cursor, key.text);
    m_cursor += key.text.size();
    return true;
  case KeyKind::kBackspace:
    Erase(Before(m_cursor), m_cursor);
    return true;
  case KeyKind::kDelete:
    Erase(m_cursor, Behind(m_cursor));
    return true;
  case KeyKind::kLeft:
    m_cursor = Before(m_cursor);
    return true;
  case KeyKind::kRight:
    m_cursor = Behind(m_cursor);
    return true;
  case KeyKind::kWordLeft:
    m_cursor = WordBefore();
    return true;
  case KeyKind::kWordRight:
    m_cursor = WordBehind();
    return true;
  case KeyKind::kHome:
    m_cursor = 0;
    return true;
  case KeyKind::kEnd:
    m_cursor = m_text.size();
    return true;
  case KeyKind::kDeleteToStart:
    Erase(0, m_cursor);
    return true;
  case KeyKind::kDeleteToEnd:
    Erase(m_cursor, m_text.size());
    return true;
  case KeyKind::kDeleteWord:
    Erase(WordBefore(), m_cursor);
    return true;
  default:
    return false;
  }
}

std::size_t LineBuffer::Before(std::size_t position) const {
  std::size_t before = 0;
  for (std::size_t next = 0; next < position; next = Behind(next))
    before = next;
  return before;
}

std::size_t LineBuffer::Behind(std::size_t position) const {
  return position < m_text.size() ? position + CharacterLength(std::string_view(m_text).substr(position)) : position;
}

// Words end at blanks; bytes of characters are none.
std::size_t LineBuffer::WordBefore() const {
  std::size_t start = m_cursor;
  while (start > 0 && m_text[start - 1] == ' ')
    --start;
  while (start > 0 && m_text[start - 1] != ' ')
    --start;
  return start;
}

std::size_t LineBuffer::WordBehind() const {
  std::size_t end = m_cursor;
  while (end < m_text.size() && m_text[end] == ' ')
    ++end;
  while (end < m_text.size() && m_text[end] != ' ')
    ++end;
  return end;
}

void LineBuffer::Erase(std::size_t begin, std::size_t end) {
  m_text.erase(begin, end - begin);
  m_cursor = begin;
}

} // namespace host
