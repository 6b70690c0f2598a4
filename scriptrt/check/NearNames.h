// Names that somebody may have meant.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

// How many letters must be changed, added, left out or exchanged with their neighbour to make one of the other, without
// regard to case; more than `most` is most + 1.
std::size_t SpellingDistance(std::string_view a, std::string_view b, std::size_t most);

// The name nearest to `wanted`, of those so near that it is probably meant; empty when there is none.
std::string_view NearestName(std::string_view wanted, const std::vector<std::string_view>& names);
