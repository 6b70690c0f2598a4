// Searching a text in a text.
#pragma once

#include <cstddef>
#include <string_view>

// Where `searched` first begins at or behind `start`; npos if nowhere. Takes time linear in both lengths, however
// repetitive they are. Throws std::bad_alloc.
std::size_t FindText(std::string_view text, std::string_view searched, std::size_t start);
