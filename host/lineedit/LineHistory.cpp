#include "host/lineedit/LineHistory.h"

#include "host/support/Files.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace host {
namespace {

constexpr std::uint64_t kLargestFile = 16 << 20; // bytes; more is no history

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t begin = 0, end = 0; begin < text.size(); begin = end + 1) {
    end = std::min(text.find('\n', begin), text.size());
    std::string line = text.substr(begin, end - begin);
    if (line.ends_with('\r')) // an editor's
      line.pop_back();
    if (!line.empty())
      lines.push_back(std::move(line));
  }
  return lines;
}

} // namespace

LineHistory::LineHistory(std::string file) : m_file(std::move(file)) {
  if (m_file.empty())
    return;
  const ReadResult text = ReadWholeFile(m_file, kLargestFile);
  if (!text)
    return;
  m_lines = LinesOf(*text);
  if (m_lines.size() <= kMostLines)
    return;
  m_lines.erase(m_lines.begin(), m_lines.end() - kMostLines);
  std::string kept;
  for (const std::string& line : m_lines)
    kept += line + "\n";
  WriteWholeFile(m_file, kept);
}

void LineHistory::Add(const std::string& line) {
  m_drafts.clear();
  if (line.empty() || (!m_lines.empty() && line == m_lines.back()))
    return;
  m_lines.push_back(line);
  if (m_lines.size() > kMostLines)
    m_lines.erase(m_lines.begin());
  if (!m_file.empty())
    AppendToFile(m_file, line + "\n");
}

const std::string* LineHistory::StepBack(const std::string& current) {
  const std::size_t position = m_drafts.empty() ? m_lines.size() : m_position;
  return position != 0 ? Go(position - 1, current) : nullptr;
}

const std::string* LineHistory::StepForward(const std::string& current) {
  return !m_drafts.empty() && m_position + 1 < m_drafts.size() ? Go(m_position + 1, current) : nullptr;
}

const std::string* LineHistory::Go(std::size_t to, const std::string& current) {
  if (m_drafts.empty()) {
    m_drafts = m_lines;
    m_drafts.emplace_back();
    m_position = m_lines.size();
  }
  m_drafts[m_position] = current;
  m_position = to;
  return &m_drafts[to];
}

} // namespace host
