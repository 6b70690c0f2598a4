#include "host/commandline/Seconds.h"

#include <charconv>

namespace host {

tl::expected<std::optional<std::chrono::milliseconds>, std::string> ReadSeconds(const CommandLine& line,
                                                                                std::string_view option) {
  constexpr double kLongest = 1e6;
  if (!line.Has(option))
    return std::nullopt;
  const std::string text = line.Value(option, "");
  double seconds = 0;
  const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), seconds, std::chars_format::fixed);
  if (status != std::errc() || end != text.data() + text.size() || !(seconds >= 0.001 && seconds <= kLongest))
    return tl::unexpected(std::string(option) + " " + text + ": expected seconds, 0.001 to 1000000");
  return std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
}

} // namespace host
