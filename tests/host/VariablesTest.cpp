#include "host/commandline/Variables.h"
#include "host/commandline/RunArguments.h"

#include <doctest/doctest.h>

using namespace host;

TEST_CASE("--set: values of every type") {
  const struct {
    const char* text;
    std::uint32_t type;
    std::uint64_t number;
  } cases[] = {
      {"a:dword=0", ONX_TYPE_UINT32, 0},
      {"_a1:uint32=0xffFFffFF", ONX_TYPE_UINT32, 0xFFFFFFFF},
      {"a:long=-2147483648", ONX_TYPE_INT32, 0xFFFFFFFF80000000},
      {"a:uint64=18446744073709551615", ONX_TYPE_UINT64, 0xFFFFFFFFFFFFFFFF},
      {"a:int64=-9223372036854775808", ONX_TYPE_INT64, 0x8000000000000000},
  };
  for (const auto& each : cases) {
    CAPTURE(each.text);
    std::string error;
    const auto variable = ParseVariable(each.text, error);
    REQUIRE_MESSAGE(variable, error);
    CHECK(variable->type == each.type);
    CHECK(variable->number == each.number);
  }
  std::string error;
  for (const std::string text : {"", "x", "a=b:c", "C:\\dir\\n", " -1 "}) {
    const auto variable = ParseVariable("name:String=" + text, error);
    REQUIRE(variable);
    CHECK(variable->type == ONX_TYPE_STRING);
    CHECK(variable->text == text);
  }
}

TEST_CASE("--set: what is wrong is said") {
  const struct {
    const char* text;
    const char* error;
  } cases[] = {
      {"", "expected NAME:TYPE=VALUE, as in count:dword=5"},
      {"a=1", "expected NAME:TYPE=VALUE, as in count:dword=5"},
      {"1a:dword=1", "\"1a\" is not a variable's name (letters, digits and _, no digit in front)"},
      {"a:int=1", "unknown type \"int\"; there are dword, uint32, string, int32, long, uint64, int64"},
      {"a:dword=", "\"\" is not a number"},
      {"a:dword=0x", "\"0x\" is not a number"},
      {"a:dword=-1", "-1 is not within 0 to 4294967295"},
      {"a:dword=4294967296", "4294967296 is not within 0 to 4294967295"},
      {"a:int32=2147483648", "2147483648 is not within -2147483648 to 2147483647"},
      {"a:int64=9223372036854775808", "9223372036854775808 is not within -9223372036854775808 to 9223372036854775807"},
      {"a:uint64=18446744073709551616", "18446744073709551616 is not within 0 to 18446744073709551615"},
  };
  for (const auto& each : cases) {
    CAPTURE(each.text);
    std::string error;
    CHECK_FALSE(ParseVariable(each.text, error));
    CHECK(error == each.error);
  }
}

TEST_CASE("--set: the argument is named, and a name is set once") {
  std::string error;
  CHECK_FALSE(ParseVariables({"a:dword=1", "b:dword=x"}, error));
  CHECK(error == "--set b:dword=x: \"x\" is not a number");
  CHECK_FALSE(ParseVariables({"count:dword=1", "COUNT:string=x"}, error));
  CHECK(error == "--set COUNT:string=x: the variable is set twice");
}

TEST_CASE("--get: values as text") {
  const struct {
    std::uint32_t type;
    std::uint64_t value;
    const char* text;
  } cases[] = {
      {ONX_TYPE_UINT32, 0xFFFFFFFF, "4294967295"},
      {ONX_TYPE_INT32, 0xFFFFFFFFFFFFFFFE, "-2"},
      {ONX_TYPE_UINT64, 0xFFFFFFFFFFFFFFFF, "18446744073709551615"},
      {ONX_TYPE_INT64, 0x8000000000000000, "-9223372036854775808"},
  };
  TONXSCRIPTVARIABLE record{};
  for (const auto& each : cases) {
    record.type = each.type;
    record.value = each.value;
    CHECK(FormatValue(record) == each.text);
  }
  const std::string bytes("12.5\r\n\t\\ \0\x1F\x7F\xE4\"", 14);
  record.type = ONX_TYPE_STRING;
  record.value = reinterpret_cast<std::uintptr_t>(bytes.data());
  record.length = bytes.size();
  CHECK(FormatValue(record) == "12.5\\r\\n\\t\\\\ \\(x00)\\(x1F)\\(x7F)\xE4\"");
}
