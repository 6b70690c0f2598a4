#include "terminal/AnswerSplitter.h"

#include <utility>

void AnswerSplitter::Feed(std::string_view bytes) {
  for (const char byte : bytes) {
    const bool afterCr = std::exchange(m_lastWasCr, byte == '\r');
    if (byte == '\r' || byte == '\n') {
      if (!afterCr)
        EndLine(kLongestLine);
    } else {
      if (m_unfinished.size() == m_limit)
        EndLine(kLongestContinuation);
      m_unfinished += byte == '\0' ? ' ' : byte;
    }
  }
}

AnswerSplitter::Lines AnswerSplitter::TakeLines() {
  Lines taken{std::exchange(m_lines, {}), m_unfinishedTaken};
  m_unfinishedTaken = !m_unfinished.empty();
  if (m_unfinishedTaken)
    taken.lines.push_back(m_unfinished);
  if (taken.lines.size() > m_keep)
    taken.lines.pop_front();
  return taken;
}

void AnswerSplitter::ForgetUnfinished() {
  m_unfinished.clear();
  m_limit = kLongestLine;
  m_unfinishedTaken = false;
}

void AnswerSplitter::EndLine(std::size_t nextLimit) {
  m_lines.push_back(std::exchange(m_unfinished, {}));
  if (m_lines.size() > m_keep)
    m_lines.pop_front();
  m_limit = nextLimit;
}
