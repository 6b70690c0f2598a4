#include "host/channel/stream/Link.h"

#include <algorithm>

namespace host {

int MillisecondsUntil(LinkClock::time_point then, std::chrono::milliseconds longest) {
  const auto now = LinkClock::now();
  if (then <= now)
    return 0;
  // Compared before it is rounded: "never" does not fit an int.
  return static_cast<int>(
      std::chrono::ceil<std::chrono::milliseconds>(std::min<LinkClock::duration>(then - now, longest)).count());
}

} // namespace host
