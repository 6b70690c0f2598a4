// The lines that were typed, this time and the times before.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// In a file a line is a line, which a user can read, edit and delete; several programs may add to it. Where it cannot
// be read or written, the history is that of this object alone.
class LineHistory {
public:
  static constexpr std::size_t kMostLines = 500; // that are kept

  // An empty path: there is no file.
  explicit LineHistory(std::string file);

  // Adds a line, unless it is empty or repeats the last one; stepping begins anew.
  void Add(const std::string& line);

  // The line before or behind the one that is shown now, which is `current` and can be come back to with what was
  // typed in it. Null when there is none; otherwise valid until the next call.
  const std::string* StepBack(const std::string& current);
  const std::string* StepForward(const std::string& current);

private:
  const std::string* Go(std::size_t to, const std::string& current);

  const std::string m_file;
  std::vector<std::string> m_lines;
  std::vector<std::string> m_drafts; // while stepping: the lines, as changed meanwhile, and the new one
  std::size_t m_position = 0;        // among those
};

} // namespace host
