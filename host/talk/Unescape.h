// The module's escapes in what a user types, which belong to whoever is linked with them.
#pragma once

#include <tl/expected.hpp>

#include <functional>
#include <string>

namespace host {

// The bytes that a typed text stands for; otherwise what is wrong with it.
using Unescape = std::function<tl::expected<std::string, std::string>(const std::string& text)>;

} // namespace host
