#include "host/report/ReportText.h"

#include "host/support/Utf8.h"

#include <cstdio>

namespace host {
namespace {

const char* EntityOf(char c) {
  switch (c) {
  case '&':
    return "&amp;";
  case '<':
    return "&lt;";
  case '>':
    return "&gt;";
  case '"':
    return "&quot;";
  case '\'':
    return "&#39;";
  default:
    return nullptr;
  }
}

} // namespace

std::string Visible(std::string_view bytes) {
  std::string text;
  for (const char c : ToUtf8(bytes)) {
    const unsigned byte = static_cast<unsigned char>(c);
    constexpr unsigned kPictures = 0x2400;
    if (byte < ' ' && c != '\t' && c != '\n')
      AppendUtf8(text, kPictures + byte);
    else if (byte == 0x7F)
      AppendUtf8(text, kPictures + 0x21);
    else
      text += c;
  }
  return text;
}

std::string Escaped(std::string_view bytes) {
  std::string text;
  for (const char c : Visible(bytes)) {
    if (const char* const entity = EntityOf(c))
      text += entity;
    else
      text += c;
  }
  return text;
}

std::string IsoTime(std::chrono::system_clock::time_point time) {
  using namespace std::chrono;
  const auto day = floor<days>(time);
  const year_month_day date(day);
  const hh_mm_ss clock(floor<milliseconds>(time - day));
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
  return text;
}

std::string Seconds(Microseconds time) {
  char text[40];
  std::snprintf(text, sizeof text, "%lld.%06lld", static_cast<long long>(time.count() / 1000000),
                static_cast<long long>(time.count() % 1000000));
  return text;
}

std::string TextOf(const NamedValue& value) {
  if (const auto* const text = std::get_if<std::string>(&value.value))
    return *text;
  const auto* const number = std::get_if<std::uint64_t>(&value.value);
  return number ? std::to_string(*number) : std::to_string(std::get<std::int64_t>(value.value));
}

std::string LimitsOf(const Measurement& measurement) {
  const std::string unit = measurement.unit.empty() ? "" : " " + measurement.unit;
  if (measurement.low.empty())
    return "at most " + measurement.high + unit;
  if (measurement.high.empty())
    return "at least " + measurement.low + unit;
  return measurement.low + " to " + measurement.high + unit;
}

std::string ValueOf(const Measurement& measurement) {
  return measurement.unit.empty() ? measurement.value : measurement.value + " " + measurement.unit;
}

} // namespace host
