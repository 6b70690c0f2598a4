// The variables that a host hands in and reads back, where a command line cannot: any bytes, types, repetitions.

#include "tests/script/ScriptHarness.h"

#include <doctest/doctest.h>

namespace {

constexpr std::uint64_t kNumber = 0xFFFFFFFF80000001;
constexpr std::uint64_t kTwo = 2;

TONXSCRIPTVARIABLE Record(const char* name, std::uint32_t type = 0, const void* value = nullptr) {
  return {name, type, reinterpret_cast<std::uintptr_t>(value), 3, {}};
}

// What a variable is now, as "TYPE VALUE"; "none" when there is none of that name.
std::string Got(ScriptHarness& harness, const char* name) {
  TONXSCRIPTVARIABLE record = Record(name);
  std::uint64_t found = 0;
  CHECK(harness.Session().GetVariables(&record, 1, &found) == EONX_ERR_NONE);
  if (found == 0)
    return "none";
  const auto* const text = reinterpret_cast<const char*>(record.value);
  return std::to_string(record.type) + " " +
         (record.type == ONX_TYPE_STRING ? std::string(text, record.length) : std::to_string(record.value));
}

} // namespace

TEST_CASE("variables of every type go in and come back") {
  const TONXSCRIPTVARIABLE records[] = {Record("d", ONX_TYPE_UINT32, &kNumber),
                                        Record("i", ONX_TYPE_INT32, &kNumber),
                                        Record("u", ONX_TYPE_UINT64),
                                        Record("s", ONX_TYPE_STRING, "a\0b"),
                                        Record("empty", ONX_TYPE_STRING),
                                        Record("odd", 6, &kNumber),
                                        Record(nullptr, 0, &kNumber)};
  ScriptHarness harness;
  REQUIRE(harness.Session().SetVariables(records, std::size(records), ExistingVariables::kForget) == EONX_ERR_NONE);
  CHECK(harness.Run("print(d, i, u, s, strlen(empty)); s += \"!\"; D = 7;") == "2147483649-21474836470a\\0b0");
  CHECK(Got(harness, "d") == "1 7");
  CHECK(Got(harness, "i") == "3 18446744071562067969"); // widened by its type
  CHECK(Got(harness, "S") == std::string("2 a\0b!", 6));
  CHECK(Got(harness, "empty") == "2 ");
  for (const char* name : {"odd", "dd", static_cast<const char*>(nullptr)})
    CHECK(Got(harness, name) == "none");
}

TEST_CASE("variables stay until they are forgotten, and the later one of a name counts") {
  const TONXSCRIPTVARIABLE first[] = {Record("a", ONX_TYPE_UINT32), Record("b", ONX_TYPE_UINT32)};
  const TONXSCRIPTVARIABLE second = Record("A", ONX_TYPE_UINT64, &kTwo);
  ScriptHarness harness;
  harness.Session().SetVariables(first, 2, ExistingVariables::kForget);
  harness.Session().SetVariables(&second, 1, ExistingVariables::kKeep);
  CHECK(harness.Run("print(a, b);") == "20");
  TONXSCRIPTVARIABLE both[] = {Record("a"), Record("b")};
  std::uint64_t found = 0;
  CHECK(harness.Session().GetVariables(both, 2, &found) == EONX_ERR_NONE);
  CHECK(found == 3); // each of the two called "a" is a match
  CHECK(both[0].value == 2);
  CHECK(harness.Session().GetVariables(nullptr, 2, nullptr) == EONX_ERR_NONE);
  harness.Session().SetVariables(&second, 1, ExistingVariables::kForget);
  CHECK(Got(harness, "b") == "none");
  harness.Session().SetVariables(nullptr, 5, ExistingVariables::kForget);
  CHECK(Got(harness, "a") == "none");
}
