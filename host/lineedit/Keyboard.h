// The terminal that somebody types at and looks at: its keys one by one, and its screen as far as one row of it.
// Bodies: win32/ and posix/.
#pragma once

#include "host/lineedit/Key.h"
#include "host/support/Signal.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace host {

// One object at a time. [one thread]
class Keyboard {
public:
  // Whether standard input and output are terminals.
  static bool IsThere();

  // A raised `wake` ends a wait for a key; it must outlive this.
  explicit Keyboard(Signal& wake);
  // Rests.
  ~Keyboard();
  Keyboard(const Keyboard&) = delete;
  Keyboard& operator=(const Keyboard&) = delete;

  // From here on keys come as they are pressed and nobody else shows them; Ctrl+C is a key too.
  void Take();
  // The next key; nothing when there was none for so long (negative: for ever) or the signal is raised, which stays so.
  // Takes the terminal if that has not been done.
  std::optional<Key> Read(std::chrono::milliseconds patience);
  // The terminal is again what it was, for others to use, until it is taken again.
  void Rest();
  // Suspends the program, as Ctrl+Z usually does, until it is continued.
  void Suspend();

  // Of the screen.
  std::size_t Columns() const;
  // UTF-8. False when the terminal is gone.
  bool Write(std::string_view text);
  void ClearScreen();

  // A text of keys as files, devices and the command line have it.
  static std::string HostText(const std::string& keys);
  // The way back.
  static std::string KeyText(const std::string& text);

private:
  struct Body;
  const std::unique_ptr<Body> m_body;
};

} // namespace host
