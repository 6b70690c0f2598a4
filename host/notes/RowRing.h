// The last of many rows, under numbers that stay theirs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <utility>

namespace host {

// Rows are numbered from 0 as they come, and keep their numbers when the oldest go.
template <class Row>
class RowRing {
public:
  explicit RowRing(std::size_t most) : m_most(most) {}

  void Add(Row row) {
    m_rows.push_back(std::move(row));
    if (m_rows.size() <= m_most)
      return;
    m_rows.pop_front();
    ++m_first;
  }
  void Clear() {
    m_first = End();
    m_rows.clear();
  }

  // The rows that are here: from First() up to, but without, End().
  std::uint64_t First() const { return m_first; }
  std::uint64_t End() const { return m_first + m_rows.size(); }
  // Null when the row is not here any more.
  const Row* At(std::uint64_t number) const {
    return number >= m_first && number < End() ? &m_rows[static_cast<std::size_t>(number - m_first)] : nullptr;
  }
  // The latest; null when there is none.
  Row* Last() { return m_rows.empty() ? nullptr : &m_rows.back(); }

private:
  std::size_t m_most;
  std::uint64_t m_first = 0;
  std::deque<Row> m_rows;
};

} // namespace host
