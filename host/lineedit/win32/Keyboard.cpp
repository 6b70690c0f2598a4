#include "host/lineedit/Keyboard.h"

#include <algorithm>
#include <utility>
#include <windows.h>

namespace host {
namespace {

constexpr std::size_t kUsualColumns = 80;

HANDLE Input() {
  return GetStdHandle(STD_INPUT_HANDLE);
}

HANDLE Output() {
  return GetStdHandle(STD_OUTPUT_HANDLE);
}

bool IsConsole(HANDLE handle) {
  DWORD mode = 0;
  return GetConsoleMode(handle, &mode) != FALSE;
}

std::wstring Wide(UINT codePage, std::string_view text) {
  const int size = static_cast<int>(text.size());
  std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0)), L'\0');
  MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
  return wide;
}

std::string Narrow(UINT codePage, std::wstring_view wide) {
  const int size = static_cast<int>(wide.size());
  const int length = WideCharToMultiByte(codePage, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(codePage, 0, wide.data(), size, text.data(), length, nullptr, nullptr);
  return text;
}

struct VirtualKey {
  WORD code;
  KeyKind kind;
  KeyKind withControl;
};
constexpr VirtualKey kVirtualKeys[] = {
    {VK_LEFT, KeyKind::kLeft, KeyKind::kWordLeft},
    {VK_RIGHT, KeyKind::kRight, KeyKind::kWordRight},
    {VK_HOME, KeyKind::kHome, KeyKind::kDeleteToStart},
    {VK_END, KeyKind::kEnd, KeyKind::kDeleteToEnd},
    {VK_UP, KeyKind::kUp, KeyKind::kUp},
    {VK_DOWN, KeyKind::kDown, KeyKind::kDown},
    {VK_DELETE, KeyKind::kDelete, KeyKind::kDeleteToEnd},
    {VK_ESCAPE, KeyKind::kDeleteToStart, KeyKind::kOther},
};

} // namespace

struct Keyboard::Body {
  Signal& wake;
  DWORD restored = 0;
  bool isTaken = false;
  std::wstring high; // the first half of a character that takes two

  void Begin();
  std::optional<Key> KeyOf(const KEY_EVENT_RECORD& event);
};

void Keyboard::Body::Begin() {
  if (isTaken || GetConsoleMode(Input(), &restored) == FALSE)
    return;
  isTaken = SetConsoleMode(Input(), restored & ~static_cast<DWORD>(ENABLE_LINE_INPUT | ENABLE_ECHO_INPUT |
                                                                   ENABLE_PROCESSED_INPUT)) != FALSE;
}

std::optional<Key> Keyboard::Body::KeyOf(const KEY_EVENT_RECORD& event) {
  const bool isAltCode = !event.bKeyDown && event.wVirtualKeyCode == VK_MENU && event.uChar.UnicodeChar != 0;
  if (!event.bKeyDown && !isAltCode)
    return std::nullopt;
  const bool control = (event.dwControlKeyState & (LEFT_CTRL_PRESSED | RIGHT_CTRL_PRESSED)) != 0;
  for (const VirtualKey& key : kVirtualKeys) {
    if (event.wVirtualKeyCode == key.code && !isAltCode)
      return Key{control ? key.withControl : key.kind, {}};
  }
  const wchar_t character = event.uChar.UnicodeChar;
  if (character == 0)
    return std::nullopt;
  if (character < 0x20 || character == 0x7F) {
    const Key key = KeyOfControl(static_cast<char>(character));
    return key.kind == KeyKind::kSuspend ? Key{KeyKind::kEndOfInput, {}} : key; // what Ctrl+Z means here
  }
  high += character;
  if (character >= 0xD800 && character < 0xDC00)
    return std::nullopt;
  return Key{KeyKind::kText, Narrow(CP_UTF8, std::exchange(high, {}))};
}

bool Keyboard::IsThere() {
  return IsConsole(Input()) && IsConsole(Output());
}

Keyboard::Keyboard(Signal& wake) : m_body(new Body{wake, 0, false, {}}) {}

Keyboard::~Keyboard() {
  Rest();
}

std::optional<Key> Keyboard::Read(std::chrono::milliseconds patience) {
  Take();
  const HANDLE waited[] = {reinterpret_cast<HANDLE>(m_body->wake.Native()), Input()};
  const DWORD time = patience.count() < 0 ? INFINITE : static_cast<DWORD>(patience.count());
  while (WaitForMultipleObjects(2, waited, FALSE, time) == WAIT_OBJECT_0 + 1) {
    INPUT_RECORD record = {};
    DWORD count = 0;
    if (ReadConsoleInputW(Input(), &record, 1, &count) == FALSE)
      return Key{KeyKind::kGone, {}};
    if (count == 0 || record.EventType != KEY_EVENT)
      continue;
    if (auto key = m_body->KeyOf(record.Event.KeyEvent))
      return key;
  }
  return std::nullopt;
}

void Keyboard::Take() {
  m_body->Begin();
}

void Keyboard::Rest() {
  if (m_body->isTaken)
    SetConsoleMode(Input(), m_body->restored);
  m_body->isTaken = false;
}

// Consoles know no such thing.
void Keyboard::Suspend() {}

std::size_t Keyboard::Columns() const {
  CONSOLE_SCREEN_BUFFER_INFO info = {};
  return GetConsoleScreenBufferInfo(Output(), &info) != FALSE && info.dwSize.X > 1
             ? static_cast<std::size_t>(info.dwSize.X)
             : kUsualColumns;
}

bool Keyboard::Write(std::string_view text) {
  constexpr std::size_t kPiece = 8192; // what a console takes at once has a limit
  const std::wstring wide = Wide(CP_UTF8, text);
  for (std::size_t sent = 0; sent < wide.size();) {
    DWORD count = 0;
    const auto piece = static_cast<DWORD>(std::min(kPiece, wide.size() - sent));
    if (WriteConsoleW(Output(), wide.data() + sent, piece, &count, nullptr) == FALSE || count == 0)
      return false;
    sent += count;
  }
  return true;
}

void Keyboard::ClearScreen() {
  CONSOLE_SCREEN_BUFFER_INFO info = {};
  if (GetConsoleScreenBufferInfo(Output(), &info) == FALSE)
    return;
  const DWORD cells = static_cast<DWORD>(info.dwSize.X) * static_cast<DWORD>(info.dwSize.Y);
  DWORD count = 0;
  FillConsoleOutputCharacterW(Output(), L' ', cells, {0, 0}, &count);
  FillConsoleOutputAttribute(Output(), info.wAttributes, cells, {0, 0}, &count);
  SetConsoleCursorPosition(Output(), {0, 0});
}

std::string Keyboard::HostText(const std::string& keys) {
  return Narrow(CP_ACP, Wide(CP_UTF8, keys));
}

std::string Keyboard::KeyText(const std::string& text) {
  return Narrow(CP_UTF8, Wide(CP_ACP, text));
}

} // namespace host
