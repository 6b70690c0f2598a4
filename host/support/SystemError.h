// What the system says about one of its error codes.
#pragma once

#include <string>
#include <system_error>

namespace host {

// `code` is an `errno`, or what GetLastError or WSAGetLastError answered.
inline std::string SystemErrorText(int code) {
  return std::system_category().message(code);
}

} // namespace host
