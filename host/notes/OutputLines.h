// A script's output, piece by piece, as lines.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace host {

// Of a line that was written over again and again behind carriage returns, as progress is, the last text counts.
class OutputLines {
public:
  using Take = std::function<void(std::string_view line)>;

  explicit OutputLines(Take take) : m_take(std::move(take)) {}

  void Add(std::string_view piece) {
    for (const char c : piece) {
      if (c == '\n') {
        TakeLine();
      } else {
        if (m_afterReturn)
          m_line.clear();
        m_afterReturn = c == '\r';
        if (!m_afterReturn && m_line.size() < kLongest)
          m_line += c;
      }
    }
  }
  // The last line may have no end.
  void Finish() {
    if (!m_line.empty())
      TakeLine();
  }

private:
  static constexpr std::size_t kLongest = 4096; // bytes; more than anybody keeps

  void TakeLine() {
    m_take(m_line);
    m_line.clear();
    m_afterReturn = false;
  }

  const Take m_take;
  std::string m_line;
  bool m_afterReturn = false;
};

} // namespace host
