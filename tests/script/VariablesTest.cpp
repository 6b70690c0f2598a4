// Variables that a host hands in and reads back.

#include "tests/script/ScriptHarness.h"

#include <doctest/doctest.h>

#include <array>
#include <string>

using namespace std::string_literals;

namespace {

TONXSCRIPTVARIABLE Number(const char* name, std::uint32_t type, const std::uint64_t& value) {
  return {name, type, reinterpret_cast<std::uintptr_t>(&value), 0, {}};
}
TONXSCRIPTVARIABLE Text(const char* name, const std::string& value) {
  return {
      name, ONX_TYPE_STRING, reinterpret_cast<std::uintptr_t>(value.data()), 0xFFFFFFFF00000000U | value.size(), {}};
}
TONXSCRIPTVARIABLE Wanted(const char* name) {
  return {name, 0, 0, 0, {}};
}

} // namespace

TEST_CASE("scripts see the host's variables and leave values in them") {
  ScriptHarness harness;
  const std::uint64_t number = 0xFFFFFFFFFFFFFFFE;
  const std::string text = "a\0b"s; // only the low half of its length field counts
  const std::array records = {
      Number("Counter", ONX_TYPE_INT32, number), Number("odd", 7, number), Text("text", text),
      Number("strlen", ONX_TYPE_UINT64, number), // hides the built-in
  };
  REQUIRE(harness.Runner().SetVariables(records.data(), records.size(), false) == EONX_ERR_NONE);
  CHECK(harness.Run("print(counter, text, strlen); COUNTER += 10; text += \"!\";") == "-2a\\0b18446744073709551614");

  std::array wanted = {Wanted("COUNTER"), Wanted("text"), Wanted("odd"), Wanted("strlen")};
  std::uint64_t found = 0;
  REQUIRE(harness.Runner().GetVariables(wanted.data(), wanted.size(), &found) == EONX_ERR_NONE);
  CHECK(found == 3);
  CHECK(wanted[0].type == ONX_TYPE_INT32);
  CHECK(wanted[0].value == 8);
  CHECK(std::string(reinterpret_cast<const char*>(wanted[1].value), wanted[1].length) == "a\0b!"s);
  CHECK(wanted[2].type == 0);
  CHECK(wanted[3].value == number);
}

TEST_CASE("of variables with the same name each counts and the last one stands") {
  ScriptHarness harness;
  const std::uint64_t one = 1;
  const std::uint64_t two = 2;
  const auto first = Number("n", ONX_TYPE_UINT32, one);
  const auto second = Number("N", ONX_TYPE_UINT64, two);
  CHECK(harness.Runner().SetVariables(&first, 1, false) == EONX_ERR_NONE);
  CHECK(harness.Runner().SetVariables(&second, 1, true) == EONX_ERR_NONE);
  CHECK(harness.Run("print(n);") == "2");
  TONXSCRIPTVARIABLE wanted = Wanted("n");
  std::uint64_t found = 0;
  CHECK(harness.Runner().GetVariables(&wanted, 1, &found) == EONX_ERR_NONE);
  CHECK(found == 2);
  CHECK(wanted.type == ONX_TYPE_UINT64);

  CHECK(harness.Runner().SetVariables(nullptr, 0, false) == EONX_ERR_NONE); // forgets them
  CHECK(harness.Runner().GetVariables(&wanted, 1, nullptr) == EONX_ERR_NONE);
  CHECK(harness.Run("print(n);") == "Unknown identifier near line 1/column 7 (offset 6) during parsing\n");
}
