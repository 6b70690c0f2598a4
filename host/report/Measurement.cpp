#include "host/report/Measurement.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

constexpr std::string_view kPass = ": PASS";
constexpr std::string_view kFail = ": FAIL";

bool TakeFront(std::string_view& text, std::string_view front) {
  if (!text.starts_with(front))
    return false;
  text.remove_prefix(front.size());
  return true;
}

bool TakeBack(std::string_view& text, std::string_view back) {
  if (!text.ends_with(back))
    return false;
  text.remove_suffix(back.size());
  return true;
}

// A decimal number with a point or without; empty when none stands in front.
std::string_view TakeNumber(std::string_view& text) {
  constexpr std::string_view kDigits = "0123456789";
  const std::size_t begin = text.starts_with('-') ? 1 : 0;
  std::size_t end = std::min(text.find_first_not_of(kDigits, begin), text.size());
  if (end == begin)
    return {};
  if (text.substr(end).starts_with('.')) {
    const std::size_t fraction = std::min(text.find_first_not_of(kDigits, end + 1), text.size());
    if (fraction > end + 1)
      end = fraction;
  }
  const std::string_view number = text.substr(0, end);
  text.remove_prefix(end);
  return number;
}

// The whole text as "LOW to HIGH", "at least LOW" or "at most HIGH".
bool ReadLimits(std::string_view text, Measurement& measurement) {
  if (TakeFront(text, "at least ")) {
    measurement.low = TakeNumber(text);
    return !measurement.low.empty() && text.empty();
  }
  if (TakeFront(text, "at most ")) {
    measurement.high = TakeNumber(text);
    return !measurement.high.empty() && text.empty();
  }
  measurement.low = TakeNumber(text);
  if (measurement.low.empty() || !TakeFront(text, " to "))
    return false;
  measurement.high = TakeNumber(text);
  return !measurement.high.empty() && text.empty();
}

// `text` is what stands behind the name: "VALUE[ UNIT], LIMITS[ UNIT]".
bool ReadValueAndLimits(std::string_view text, Measurement& measurement) {
  measurement.value = TakeNumber(text);
  if (measurement.value.empty())
    return false;
  // A unit may have a comma of its own, but stands twice.
  for (std::size_t comma = text.find(", "); comma != std::string_view::npos; comma = text.find(", ", comma + 1)) {
    const std::string_view unit = text.substr(0, comma);
    std::string_view limits = text.substr(comma + 2);
    if ((unit.empty() || unit.starts_with(' ')) && TakeBack(limits, unit) && ReadLimits(limits, measurement)) {
      measurement.unit = unit.substr(std::min<std::size_t>(unit.size(), 1));
      return true;
    }
  }
  return false;
}

// -1, 0 or 1 for numbers of the form above: exact, however long they are.
int Compare(std::string_view a, std::string_view b) {
  const bool negative = a.starts_with('-');
  const bool otherNegative = b.starts_with('-');
  const auto parts = [](std::string_view number) {
    number.remove_prefix(number.starts_with('-') ? 1 : 0);
    const std::size_t point = std::min(number.find('.'), number.size());
    std::string_view whole = number.substr(0, point);
    whole.remove_prefix(std::min(whole.find_first_not_of('0'), whole.size()));
    std::string_view fraction = number.substr(std::min(point + 1, number.size()));
    fraction = fraction.substr(0, fraction.find_last_not_of('0') + 1);
    return std::pair(whole, fraction);
  };
  const auto [whole, fraction] = parts(a);
  const auto [otherWhole, otherFraction] = parts(b);
  const bool bothZero = whole.empty() && fraction.empty() && otherWhole.empty() && otherFraction.empty();
  if (bothZero)
    return 0;
  if (negative != otherNegative)
    return negative ? -1 : 1;
  int order =
      whole.size() != otherWhole.size() ? (whole.size() < otherWhole.size() ? -1 : 1) : whole.compare(otherWhole);
  if (order == 0)
    order = fraction.compare(otherFraction);
  order = order < 0 ? -1 : order > 0 ? 1 : 0;
  return negative ? -order : order;
}

bool IsWithinLimits(const Measurement& measurement) {
  return (measurement.low.empty() || Compare(measurement.low, measurement.value) <= 0) &&
         (measurement.high.empty() || Compare(measurement.value, measurement.high) <= 0);
}

} // namespace

std::optional<Measurement> ReadMeasurement(std::string_view line) {
  // The end comes first: it tells sooner than the beginning that a line is another one.
  const bool saysPass = TakeBack(line, kPass);
  if (!saysPass && !TakeBack(line, kFail))
    return std::nullopt;
  constexpr std::string_view kBegin = "limit: ";
  const std::size_t begin = line.find(kBegin);
  if (begin == std::string_view::npos)
    return std::nullopt;
  line.remove_prefix(begin + kBegin.size());
  constexpr std::string_view kEquals = " = ";
  for (std::size_t equals = line.find(kEquals); equals != std::string_view::npos;
       equals = line.find(kEquals, equals + 1)) {
    Measurement measurement;
    if (ReadValueAndLimits(line.substr(equals + kEquals.size()), measurement)) {
      measurement.name = line.substr(0, equals);
      measurement.passed = saysPass && IsWithinLimits(measurement);
      return measurement;
    }
  }
  return std::nullopt;
}

bool MayHaveMeasurements(std::string_view text) {
  return text.find(kPass) != std::string_view::npos || text.find(kFail) != std::string_view::npos;
}

} // namespace host
