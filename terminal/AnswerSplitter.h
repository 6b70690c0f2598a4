// Makes lines of the bytes that a device sends.
//
// A line ends with CR, LF or CR LF, wherever the bytes were cut on their way; a run of CRs ends one line. All other
// bytes are kept as they are, except zero: no list can hold it, so it becomes a blank, as wide as the byte it stands
// for.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

// Bytes go in in pieces of any size; now and then the lines are taken out, for somebody who shows them.
class AnswerSplitter {
public:
  // Whoever shows an unfinished line shows it anew each time it grows, and draws all of it, so it must not grow for
  // ever. A line that reaches the first size goes on in lines of the second one, until the device ends it: many lines
  // of the first size in one window would take a second to draw.
  static constexpr std::size_t kLongestLine = 1 << 20;         // bytes
  static constexpr std::size_t kLongestContinuation = 1 << 14; // bytes

  struct Lines {
    std::deque<std::string> lines; // the oldest first; the last one may be unfinished
    bool replaceLast = false;      // the first one is the longer form of the last line that was taken out before
  };

  // Of the lines between two calls of TakeLines only the last `keep` are kept.
  explicit AnswerSplitter(std::size_t keep) : m_keep(keep) {}

  void Feed(std::string_view bytes);
  // The lines since the last call, an unfinished one once more as far as it has come.
  Lines TakeLines();
  // What continues the unfinished line becomes a line of its own.
  void ForgetUnfinished();

private:
  void EndLine(std::size_t nextLimit);

  std::size_t m_keep;
  std::deque<std::string> m_lines; // finished since the last call of TakeLines
  std::string m_unfinished;
  std::size_t m_limit = kLongestLine; // of the unfinished line
  bool m_unfinishedTaken = false;     // at the last call of TakeLines there was an unfinished line
  bool m_lastWasCr = false;
};
