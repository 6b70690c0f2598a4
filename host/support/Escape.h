// The escapes of the script language, for texts that a user types elsewhere.
#pragma once

#include <tl/expected.hpp>

#include <string>
#include <string_view>

namespace host {

// Takes one escape from the head of `text`, which begins behind its backslash: \n \t \r \" \\, one hexadecimal digit
// (\0 to \F), \(65) \(x41) \(b1000001). Its byte, or what is wrong with it.
tl::expected<char, std::string> TakeEscape(std::string_view& text);

} // namespace host
