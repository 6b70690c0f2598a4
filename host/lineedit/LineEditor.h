// Lines that somebody types at a terminal, edited and with a history, while a program goes on printing; from a file or
// a pipe they are lines as they stand there.
#pragma once

#include "host/lineedit/Keyboard.h"
#include "host/lineedit/LineBuffer.h"
#include "host/lineedit/LineHistory.h"
#include "host/lineedit/PlainInput.h"

#include <atomic>
#include <functional>

namespace host {

enum class TypedKind {
  kLine,
  kEnd,       // of the input: Ctrl+D on an empty line, or there is no more
  kInterrupt, // Ctrl+C; what was typed is gone
  kStopped,   // by Stop, or the terminal is gone
};

struct Typed {
  TypedKind kind;
  std::string text; // of a line, without its end; of an interrupt, what is gone
};

// A line of the terminal stands in the last row. Whatever is printed goes above it, but what does not end with a line
// break stands in front of it, as a device's prompt does.
class LineEditor {
public:
  // While nobody types, `idle` is called so often.
  static constexpr std::chrono::milliseconds kIdleTime{10};

  // The file of a LineHistory, which only counts at a terminal.
  explicit LineEditor(const std::string& historyFile);
  // The terminal is what it was.
  ~LineEditor() = default;

  // Whether somebody types at a terminal and looks at it.
  bool IsInteractive() const { return m_keyboard.has_value(); }
  // What is typed from now on is the editor's, for a program that says so before the first line.
  void Take();
  // Waits for a line. At a terminal, `prompt` stands in front of it.
  Typed Read(const std::string& prompt, const std::function<void()>& idle = {});
  // UTF-8 without control characters but line breaks and, for a terminal, those that the caller wants to have their
  // effect: a line with one is finished at once. False once standard output cannot be written. [the thread of Read,
  // within `idle` too]
  bool Print(std::string_view text);
  bool HasFailed() const { return m_failed; }
  // Moves to a new line if need be, and gives the terminal back until the next Read.
  void Rest();
  void ClearScreen();
  bool IsStopped() const { return m_isStopped; }
  // Ends Read for good. [any thread, also a signal handler]
  void Stop() {
    m_isStopped = true;
    m_stopped.Raise();
  }

private:
  Typed ReadPlain(const std::function<void()>& idle);
  // Nothing: the line goes on.
  std::optional<Typed> Take(const Key& key);
  Typed Finish(TypedKind kind);
  void Step(const std::string* line);
  void PrintAbove(std::string_view text);
  // These add to what is written next.
  void Erase();
  void Draw();
  void Flush();

  Signal m_stopped;
  std::atomic<bool> m_isStopped = false;
  std::optional<Keyboard> m_keyboard; // otherwise the next one
  std::optional<PlainInput> m_plain;
  LineHistory m_history;
  bool m_isReading = false;
  std::string m_prompt;
  std::string m_unfinished; // the line that was printed last, as far as it has come
  LineBuffer m_line;
  std::size_t m_drawn = 0; // columns of the last row that are in use
  std::string m_pending;
  bool m_failed = false;
};

} // namespace host
