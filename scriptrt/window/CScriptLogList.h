// The log of scripts' output.
#pragma once

#include "window/CLogListBox.h"

class CScriptLogList : public CLogListBox {
public:
  // Continues the log: a line feed ends a line, a carriage return lets what follows overwrite the line from its start.
  // All other bytes are shown as they are.
  void Append(const char* text);
  void Clear();

private:
  bool m_lineComplete = true; // the last line of the list is finished
  std::size_t m_column = 0;   // where the next byte of the unfinished line goes
};
