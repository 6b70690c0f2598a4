// A line while it is typed: its text in UTF-8, and where the next character goes.
#pragma once

#include "host/lineedit/Key.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

class LineBuffer {
public:
  const std::string& Text() const { return m_text; }
  std::size_t Cursor() const { return m_cursor; } // in bytes, at the start of a character

  // The cursor stands behind it then.
  void Set(std::string_view text);
  // What a key that edits or moves does. False for the other keys.
  bool Apply(const Key& key);

private:
  std::size_t Before(std::size_t position) const; // a character before
  std::size_t Behind(std::size_t position) const;
  std::size_t WordBefore() const;
  std::size_t WordBehind() const;
  void Erase(std::size_t begin, std::size_t end);

  std::string m_text;
  std::size_t m_cursor = 0;
};

} // namespace host
