// Keys out of the bytes that a terminal sends for them.
#pragma once

#include "host/lineedit/Key.h"

#include <optional>

namespace host {

class KeyDecoder {
public:
  // The key that this byte ends, if it does.
  std::optional<Key> Feed(char byte);
  // Whether bytes that belong together have begun. The Escape key alone looks like that too: when nothing follows, it
  // is over.
  bool IsWithin() const { return !m_begun.empty(); }
  void Forget() { m_begun.clear(); }

private:
  std::string m_begun;
};

} // namespace host
