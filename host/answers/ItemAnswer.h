// What the user types to choose an item of a list.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace host {

// Position of the item that an answer means; nothing when it means none. An answer is the number that stands in front
// of an item, or its text: exactly, or in another case when only one item fits so. What is both a number and a text is
// the number, unless it stands in quotation marks.
std::optional<std::size_t> FindItem(const std::vector<std::string>& items, const std::string& answer);

// Whether some item's text is also the number of one.
bool HasTextLikeNumber(const std::vector<std::string>& items);

} // namespace host
