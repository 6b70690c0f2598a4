// The variables that a host hands in and reads back.

#include "tests/script/ScriptHarness.h"

#include <doctest/doctest.h>

#include <cstring>

namespace {

TONXSCRIPTVARIABLE Record(const char* name, std::uint32_t type = 0, const void* value = nullptr,
                          std::uint64_t length = 0) {
  TONXSCRIPTVARIABLE record{};
  record.name = name;
  record.type = type;
  record.value = reinterpret_cast<std::uintptr_t>(value);
  record.length = length;
  return record;
}

// What a variable is now, as "TYPE VALUE"; "none" when there is none of that name.
std::string Got(ScriptHarness& harness, const char* name) {
  TONXSCRIPTVARIABLE record = Record(name);
  std::uint64_t found = 0;
  CHECK(harness.Runner().GetVariables(&record, 1, &found) == EONX_ERR_NONE);
  if (found == 0)
    return "none";
  const std::string type = std::to_string(record.type) + " ";
  if (record.type == ONX_TYPE_STRING)
    return type + std::string(reinterpret_cast<const char*>(record.value), record.length);
  return type + std::to_string(record.value);
}

} // namespace

TEST_CASE("variables of every type go in and come back") {
  const std::uint64_t number = 0xFFFFFFFF80000001;
  const char text[] = "a\0b";
  const TONXSCRIPTVARIABLE records[] = {Record("d", ONX_TYPE_UINT32, &number), Record("i", ONX_TYPE_INT32, &number),
                                        Record("u", ONX_TYPE_UINT64, &number), Record("l", ONX_TYPE_INT64, &number),
                                        Record("s", ONX_TYPE_STRING, text, 3), Record("zero", ONX_TYPE_UINT64),
                                        Record("empty", ONX_TYPE_STRING),      Record("odd", 6, &number),
                                        Record("untyped", 0, &number)};
  ScriptHarness harness;
  REQUIRE(harness.Runner().SetVariables(records, std::size(records), false) == EONX_ERR_NONE);
  CHECK(harness.Run("print(d, \" \", i, \" \", u, \" \", l, \" \", s, zero, strlen(empty)); s += \"!\"; D = 7;") ==
        "2147483649 -2147483647 18446744071562067969 -2147483647 a\\0b00");
  CHECK(Got(harness, "d") == "1 7");
  CHECK(Got(harness, "i") == "3 18446744071562067969"); // widened by its type
  CHECK(Got(harness, "u") == "4 18446744071562067969");
  CHECK(Got(harness, "S") == std::string("2 a\0b!", 6));
  CHECK(Got(harness, "zero") == "4 0");
  CHECK(Got(harness, "empty") == "2 ");
  CHECK(Got(harness, "odd") == "none");
  CHECK(Got(harness, "untyped") == "none");
  CHECK(Got(harness, nullptr) == "none");
  CHECK(Got(harness, "dd") == "none");
}

TEST_CASE("variables stay until they are forgotten, and the later one of a name counts") {
  const std::uint64_t one = 1;
  const std::uint64_t two = 2;
  const TONXSCRIPTVARIABLE first[] = {Record("a", ONX_TYPE_UINT32, &one), Record("b", ONX_TYPE_UINT32, &one)};
  const TONXSCRIPTVARIABLE second[] = {Record("A", ONX_TYPE_UINT64, &two)};
  ScriptHarness harness;
  harness.Runner().SetVariables(first, 2, false);
  harness.Runner().SetVariables(second, 1, true);
  CHECK(harness.Run("print(a, b);") == "21");
  TONXSCRIPTVARIABLE both[] = {Record("a"), Record("b")};
  std::uint64_t found = 0;
  CHECK(harness.Runner().GetVariables(both, 2, &found) == EONX_ERR_NONE);
  CHECK(found == 3); // each of the two called "a" is a match
  CHECK(both[0].value == 2);
  CHECK(both[1].value == 1);
  CHECK(harness.Runner().GetVariables(nullptr, 2, nullptr) == EONX_ERR_NONE);

  harness.Runner().SetVariables(second, 1, false);
  CHECK(Got(harness, "b") == "none");
  harness.Runner().SetVariables(nullptr, 5, false);
  CHECK(Got(harness, "a") == "none");
}
