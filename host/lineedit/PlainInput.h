// Standard input that is no terminal, line by line. Bodies: win32/ and posix/.
#pragma once

#include "host/support/Signal.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace host {

// One object at a time. [one thread]
class PlainInput {
public:
  // A raised `wake` ends a wait; it must outlive this.
  explicit PlainInput(Signal& wake);
  ~PlainInput();
  PlainInput(const PlainInput&) = delete;
  PlainInput& operator=(const PlainInput&) = delete;

  // The next line without its end, the last one also when it has none. Nothing when none came for so long (negative:
  // for ever), the signal is raised, which stays so, or at the end.
  std::optional<std::string> Read(std::chrono::milliseconds patience);
  bool HasEnded() const;

private:
  struct Body;
  const std::unique_ptr<Body> m_body;
};

// Takes the first line out of `bytes`; nothing when none has its end.
std::optional<std::string> TakeLine(std::string& bytes);

} // namespace host
