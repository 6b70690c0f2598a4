// What a window of rows shows.
#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <vector>

namespace host {

struct RowColumn {
  const char* title;
  int width;  // in dialog units
  int format; // LVCFMT_…
};

// Rows are known by numbers that stay theirs. [user-interface thread; what is behind it may change on others]
class RowSource {
public:
  virtual std::span<const RowColumn> Columns() const = 0;
  // What a user can choose to see; the first is everything.
  virtual std::vector<std::string> Filters() const = 0;
  virtual void SetFilter(std::size_t filter) = 0;

  // Counts up whenever a row comes, goes or changes.
  virtual std::uint64_t Changes() const = 0;
  // The number of the oldest row that is kept.
  virtual std::uint64_t First() const = 0;
  // Appends the numbers of the rows from `from` on that pass the filter. Returns the number that the next row will
  // have.
  virtual std::uint64_t Collect(std::uint64_t from, std::deque<std::uint64_t>& numbers) const = 0;
  // A row's texts, one for each column.
  virtual std::vector<std::string> Texts(std::uint64_t number) const = 0;
  virtual void Clear() = 0;
  // While it is frozen, it shows what was there then, whatever comes.
  virtual void Freeze() = 0;
  virtual void Thaw() = 0;

protected:
  ~RowSource() = default;
};

} // namespace host
