// The rows of a log that goes on, live or as they were at a moment.
#pragma once

#include "host/notes/RowRing.h"
#include "host/windows/RowSource.h"

#include <algorithm>
#include <optional>

namespace host {

// `Log` keeps rows of its type `Row` in a ring.
template <class Log>
class KeptRows : public RowSource {
public:
  // The log outlives this.
  explicit KeptRows(Log& log) : m_log(log) {}

  std::uint64_t Changes() const final { return m_log.Changes(); }
  std::uint64_t First() const final { return m_frozen ? m_frozen->First() : m_log.First(); }
  std::uint64_t Collect(std::uint64_t from, std::deque<std::uint64_t>& numbers) const final {
    std::uint64_t next = from;
    const auto collect = [&](std::uint64_t number, const Row& row) {
      next = number + 1;
      if (Fits(row))
        numbers.push_back(number);
    };
    if (!m_frozen) {
      m_log.Visit(from, collect);
      return next;
    }
    for (std::uint64_t number = std::max(from, m_frozen->First()); number < m_frozen->End(); ++number)
      collect(number, *m_frozen->At(number));
    return next;
  }
  std::vector<std::string> Texts(std::uint64_t number) const final {
    if (!m_frozen)
      return TextsOf(m_log.At(number));
    const Row* const row = m_frozen->At(number);
    return row ? TextsOf(*row) : std::vector<std::string>(Columns().size());
  }
  void Clear() final {
    m_log.Clear();
    if (m_frozen)
      Freeze();
  }
  void Freeze() final { m_frozen = m_log.Rows(); }
  void Thaw() final { m_frozen.reset(); }

protected:
  using Row = typename Log::Row;

  ~KeptRows() = default;
  virtual bool Fits(const Row& row) const = 0;
  virtual std::vector<std::string> TextsOf(const Row& row) const = 0;

private:
  Log& m_log;
  std::optional<RowRing<Row>> m_frozen;
};

} // namespace host
