#include "util/FindText.h"

#include <cstdint>
#include <cstring>
#include <vector>

namespace {

// By Knuth, Morris and Pratt: after a mismatch the longest beginning of `searched` that ends there goes on, so that no
// byte of the text is looked at twice.
std::size_t FindLinear(std::string_view text, std::string_view searched, std::size_t start) {
  std::vector<std::uint32_t> shorter(searched.size() + 1); // for a matched length: the next shorter one
  for (std::size_t i = 1, length = 0; i < searched.size(); ++i) {
    while (length > 0 && searched[i] != searched[length])
      length = shorter[length];
    length += searched[i] == searched[length] ? 1 : 0;
    shorter[i + 1] = static_cast<std::uint32_t>(length);
  }
  for (std::size_t i = start, length = 0; i < text.size(); ++i) {
    while (length > 0 && text[i] != searched[length])
      length = shorter[length];
    length += text[i] == searched[length] ? 1 : 0;
    if (length == searched.size())
      return i + 1 - length;
  }
  return std::string_view::npos;
}

} // namespace

// Most texts are not repetitive: comparing at each place where the first byte stands is quickest, and given up as soon
// as it has compared more than it has passed.
std::size_t FindText(std::string_view text, std::string_view searched, std::size_t start) {
  if (start > text.size() || searched.size() > text.size() - start)
    return std::string_view::npos;
  if (searched.empty())
    return start;
  std::size_t compared = 0;
  const std::size_t last = text.size() - searched.size();
  for (std::size_t at = start; at <= last; ++at) {
    const void* const found = std::memchr(text.data() + at, searched[0], last - at + 1);
    if (!found)
      return std::string_view::npos;
    at = static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
    std::size_t same = 1;
    while (same < searched.size() && text[at + same] == searched[same])
      ++same;
    if (same == searched.size())
      return at;
    compared += same;
    if (compared > 8 * (at - start) + 256)
      return FindLinear(text, searched, at);
  }
  return std::string_view::npos;
}
