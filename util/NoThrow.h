// The boundary that exceptions do not cross: exports and operations that the host calls.
#pragma once

#include <utility>

// What `body` answers, or `failed` when it throws.
template <typename Result, typename Body>
Result NoThrow(Result failed, Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    return failed;
  }
}

template <typename Body>
void NoThrow(Body&& body) noexcept {
  try {
    std::forward<Body>(body)();
  } catch (...) { // nobody to tell
  }
}
