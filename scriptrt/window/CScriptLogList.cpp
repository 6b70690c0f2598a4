#include "scriptrt/window/CScriptLogList.h"

#include <utility>

void CScriptLogList::Append(const char* text) {
  std::deque<std::string> lines;
  std::string line = m_lineComplete ? std::string() : TakeLastLine();
  for (; *text != '\0'; ++text) {
    if (*text == '\n') {
      if (lines.size() == kMostLines)
        lines.pop_front();
      lines.push_back(std::move(line));
      line.clear();
      m_column = 0;
    } else if (*text == '\r') {
      m_column = 0;
    } else if (m_column < line.size()) {
      line[m_column++] = *text;
    } else {
      line += *text;
      ++m_column;
    }
  }
  m_lineComplete = line.empty();
  if (!m_lineComplete)
    lines.push_back(std::move(line));
  AddLines(lines);
}

void CScriptLogList::Clear() {
  CLogListBox::Clear();
  m_lineComplete = true;
  m_column = 0;
}
