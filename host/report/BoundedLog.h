// The beginning and the end of a row of things that may grow without bounds.
#pragma once

#include <cstdint>
#include <deque>
#include <utility>
#include <vector>

namespace host {

template <class Item>
class BoundedLog {
public:
  // Keeps the first and the last `half` items.
  explicit BoundedLog(std::size_t half = 50000) : m_half(half) {}

  void Add(Item item) {
    if (m_first.size() < m_half) {
      m_first.push_back(std::move(item));
      return;
    }
    m_last.push_back(std::move(item));
    if (m_last.size() > m_half) {
      m_last.pop_front();
      ++m_leftOut;
    }
  }

  std::size_t Size() const { return m_first.size() + m_last.size(); }
  bool IsEmpty() const { return m_first.empty(); }
  // How many are missing, behind the first `LeftOutAt` of those that are here.
  std::uint64_t LeftOut() const { return m_leftOut; }
  std::size_t LeftOutAt() const { return m_first.size(); }
  const Item& operator[](std::size_t index) const {
    return index < m_first.size() ? m_first[index] : m_last[index - m_first.size()];
  }

private:
  std::size_t m_half;
  std::vector<Item> m_first;
  std::deque<Item> m_last;
  std::uint64_t m_leftOut = 0;
};

} // namespace host
