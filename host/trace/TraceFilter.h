// Which records of a trace somebody wants to see.
#pragma once

#include "host/trace/TraceRecord.h"

#include <tl/expected.hpp>

#include <bitset>
#include <string>
#include <string_view>

namespace host {

class TraceFilter {
public:
  // Adds what a user names: "sent", "received", "events", or an operation. Before the first, everything fits. False:
  // there is no such name.
  bool Add(std::string_view name);
  bool Fits(const TraceRecord& record) const;
  // What `Add` understands, for users.
  static std::string Names();

private:
  std::bitset<kChannelOperations.size()> m_operations;
  bool m_events = false;
  bool m_isSet = false;
};

} // namespace host
