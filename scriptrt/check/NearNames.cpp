#include "scriptrt/check/NearNames.h"

#include "util/AsciiCase.h"

#include <algorithm>

std::size_t SpellingDistance(std::string_view a, std::string_view b, std::size_t most) {
  const std::size_t difference = a.size() > b.size() ? a.size() - b.size() : b.size() - a.size();
  if (difference > most)
    return most + 1;
  // Rows of the table of distances between the beginnings of both, of which three are needed at a time.
  std::vector<std::size_t> before(b.size() + 1);
  std::vector<std::size_t> last(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j)
    last[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const bool same = AsciiLower(a[i - 1]) == AsciiLower(b[j - 1]);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
      const bool exchanged = i > 1 && j > 1 && AsciiLower(a[i - 1]) == AsciiLower(b[j - 2]) &&
                             AsciiLower(a[i - 2]) == AsciiLower(b[j - 1]);
      if (exchanged)
        row[j] = std::min(row[j], before[j - 2] + 1);
    }
    std::swap(before, last);
    std::swap(last, row);
  }
  return std::min(last[b.size()], most + 1);
}

std::string_view NearestName(std::string_view wanted, const std::vector<std::string_view>& names) {
  constexpr std::size_t kLongestName = 64; // people mistype no longer ones by a letter or two
  if (wanted.size() < 2 || wanted.size() > kLongestName)
    return {};
  std::size_t least = wanted.size() <= 4 ? 1 : wanted.size() <= 8 ? 2 : 3;
  std::string_view nearest;
  for (const std::string_view name : names) {
    const std::size_t distance = SpellingDistance(wanted, name, least);
    if (distance > least || (distance == least && !nearest.empty()) || distance >= name.size())
      continue;
    nearest = name;
    least = distance;
  }
  return nearest;
}
