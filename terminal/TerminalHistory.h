// The lines that were sent, and a position among them for going back and forth.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

struct TerminalHistoryEntry {
  std::string text;      // as typed, escapes and all
  bool appendCr = false; // how it was sent

  bool operator==(const TerminalHistoryEntry&) const = default;
};

class TerminalHistory {
public:
  // Adds an entry, unless it repeats the last one. The position is behind the last one then.
  void Add(TerminalHistoryEntry entry);

  // One step, around at the ends. Null when there are no entries; otherwise valid until the next Add.
  const TerminalHistoryEntry* StepBack();
  const TerminalHistoryEntry* StepForward();

private:
  std::vector<TerminalHistoryEntry> m_entries;
  std::size_t m_position = 0; // up to the number of entries
};
