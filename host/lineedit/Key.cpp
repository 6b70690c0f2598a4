#include "host/lineedit/Key.h"

namespace host {

Key KeyOfControl(char control) {
  constexpr auto ctrl = [](char letter) { return static_cast<char>(letter - 'A' + 1); };
  switch (control) {
  case '\t':
    return {KeyKind::kText, "\t"};
  case '\r':
  case '\n':
    return {KeyKind::kEnter, {}};
  case '\b':
  case '\x7F':
    return {KeyKind::kBackspace, {}};
  case ctrl('A'):
    return {KeyKind::kHome, {}};
  case ctrl('B'):
    return {KeyKind::kLeft, {}};
  case ctrl('C'):
    return {KeyKind::kInterrupt, {}};
  case ctrl('D'):
    return {KeyKind::kEndOfInput, {}};
  case ctrl('E'):
    return {KeyKind::kEnd, {}};
  case ctrl('F'):
    return {KeyKind::kRight, {}};
  case ctrl('K'):
    return {KeyKind::kDeleteToEnd, {}};
  case ctrl('L'):
    return {KeyKind::kClear, {}};
  case ctrl('N'):
    return {KeyKind::kDown, {}};
  case ctrl('P'):
    return {KeyKind::kUp, {}};
  case ctrl('U'):
    return {KeyKind::kDeleteToStart, {}};
  case ctrl('W'):
    return {KeyKind::kDeleteWord, {}};
  case ctrl('Z'):
    return {KeyKind::kSuspend, {}};
  default:
    return {};
  }
}

} // namespace host
