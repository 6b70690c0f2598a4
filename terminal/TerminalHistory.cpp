#include "terminal/TerminalHistory.h"

#include <utility>

void TerminalHistory::Add(TerminalHistoryEntry entry) {
  if (m_entries.empty() || m_entries.back() != entry)
    m_entries.push_back(std::move(entry));
  m_position = m_entries.size();
}

const TerminalHistoryEntry* TerminalHistory::StepBack() {
  if (m_entries.empty())
    return nullptr;
  m_position = (m_position == 0 ? m_entries.size() : m_position) - 1;
  return &m_entries[m_position];
}

const TerminalHistoryEntry* TerminalHistory::StepForward() {
  if (m_entries.empty())
    return nullptr;
  m_position = m_position + 1 < m_entries.size() ? m_position + 1 : 0;
  return &m_entries[m_position];
}
