// A key that somebody pressed, as the editor of a line understands it.
#pragma once

#include <string>

namespace host {

enum class KeyKind {
  kText, // a character
  kEnter,
  kBackspace,
  kDelete,
  kLeft,
  kRight,
  kWordLeft,
  kWordRight,
  kHome,
  kEnd,
  kUp,
  kDown,
  kDeleteToStart,
  kDeleteToEnd,
  kDeleteWord,
  kClear,      // the screen
  kInterrupt,  // Ctrl+C
  kEndOfInput, // Ctrl+D
  kSuspend,    // Ctrl+Z where programs can be suspended
  kGone,       // the terminal is
  kOther,      // one that means nothing here
};

struct Key {
  KeyKind kind = KeyKind::kOther;
  std::string text; // one character in UTF-8
};

// What a control character (below 0x20, or 0x7F) means.
Key KeyOfControl(char control);

} // namespace host
