#include "util/ScanNumber.h"

#include <doctest/doctest.h>

#include <string>

namespace {

std::string Scanned(std::string_view text, NumberFormat format) {
  const auto number = ScanNumber(text, format);
  return number ? std::to_string(*number) : "none";
}

} // namespace

TEST_CASE("the number that a text begins with") {
  struct Row {
    std::string_view text;
    const char* asUnsigned; // 64-bit patterns, decimal
    const char* asSigned;
    const char* asHexadecimal;
  };
  const Row rows[] = {
      {"", "none", "none", "none"},
      {"x1", "none", "none", "none"},
      {" \t\n\v\f\r09:", "9", "9", "9"},
      {"\x0E"
       "1",
       "none", "none", "none"},
      {"1 2", "1", "1", "1"},
      {"+5", "5", "5", "5"},
      {"-1", "18446744073709551615", "18446744073709551615", "18446744073709551615"},
      {"- 1", "none", "none", "none"},
      {"+-1", "none", "none", "none"},
      {"/", "none", "none", "none"},
      {"0x1F", "0", "0", "31"},
      {"0X", "0", "0", "0"},
      {"0xg", "0", "0", "0"},
      {"aFfg", "none", "none", "2815"},
      {"`", "none", "none", "none"},
      {"9223372036854775807", "9223372036854775807", "9223372036854775807", "18446744073709551615"},
      {"9223372036854775808", "9223372036854775808", "9223372036854775807", "18446744073709551615"},
      {"-9223372036854775809", "9223372036854775807", "9223372036854775808", "18446744073709551615"},
      {"18446744073709551615", "18446744073709551615", "9223372036854775807", "18446744073709551615"},
      {"18446744073709551616", "18446744073709551615", "9223372036854775807", "18446744073709551615"},
      {"184467440737095516150", "18446744073709551615", "9223372036854775807", "18446744073709551615"},
      {"FFFFFFFFFFFFFFF0", "none", "none", "18446744073709551600"},
  };
  for (const Row& row : rows) {
    CAPTURE(std::string(row.text));
    CHECK(Scanned(row.text, NumberFormat::kUnsigned) == row.asUnsigned);
    CHECK(Scanned(row.text, NumberFormat::kSigned) == row.asSigned);
    CHECK(Scanned(row.text, NumberFormat::kHexadecimal) == row.asHexadecimal);
  }
}
