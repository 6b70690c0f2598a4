#include "scriptrt/CScriptLogList.h"

void CScriptLogList::Append(const char* text) {
  std::string line = m_lineComplete ? std::string() : TakeLastLine();
  for (; *text != '\0'; ++text) {
    if (*text == '\n') {
      AddLine(line);
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
    AddLine(line);
}

void CScriptLogList::Clear() {
  CLogListBox::Clear();
  m_lineComplete = true;
  m_column = 0;
}
