// Texts of scripts and devices, which are bytes, as UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace host {

// The same text where it is UTF-8; otherwise what it is as Windows-1252.
std::string ToUtf8(std::string_view bytes);

// How many bytes the character at the start of a text takes, which is not empty; a byte that begins none is one by
// itself.
std::size_t CharacterLength(std::string_view text);

// Of a code below 0x10000.
void AppendUtf8(std::string& text, unsigned code);

} // namespace host
