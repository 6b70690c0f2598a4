#include "host/answers/ItemAnswer.h"

#include "host/support/Text.h"

#include <algorithm>
#include <string_view>

namespace host {
namespace {

std::string_view WithoutBlanks(std::string_view text) {
  const std::size_t begin = std::min(text.find_first_not_of(" \t"), text.size());
  text.remove_prefix(begin);
  return text.substr(0, text.find_last_not_of(" \t") + 1);
}

std::optional<std::size_t> NumberOfItem(const std::vector<std::string>& items, std::string_view text) {
  std::size_t number = 0;
  if (!ParseNumber(text, number) || number >= items.size())
    return std::nullopt;
  return number;
}

std::optional<std::size_t> ItemOfText(const std::vector<std::string>& items, std::string_view text) {
  if (const auto exact = std::find(items.begin(), items.end(), text); exact != items.end())
    return static_cast<std::size_t>(exact - items.begin());
  const auto fits = [text](const std::string& item) { return EqualIgnoringCase(item, text); };
  const auto first = std::find_if(items.begin(), items.end(), fits);
  if (first == items.end() || std::any_of(first + 1, items.end(), fits))
    return std::nullopt;
  return static_cast<std::size_t>(first - items.begin());
}

} // namespace

std::optional<std::size_t> FindItem(const std::vector<std::string>& items, const std::string& answer) {
  std::string_view text = WithoutBlanks(answer);
  if (const auto number = NumberOfItem(items, text))
    return number;
  if (const auto item = ItemOfText(items, answer))
    return item;
  if (const auto item = ItemOfText(items, text))
    return item;
  const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
  return quoted ? ItemOfText(items, text.substr(1, text.size() - 2)) : std::nullopt;
}

bool HasTextLikeNumber(const std::vector<std::string>& items) {
  return std::any_of(items.begin(), items.end(),
                     [&](const std::string& item) { return NumberOfItem(items, item).has_value(); });
}

} // namespace host
