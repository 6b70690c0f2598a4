#include "util/ScanNumber.h"
#include "tests/support/Cases.h"

#include <doctest/doctest.h>

TEST_CASE("the number that a text begins with") {
  CheckCases("util/ScanNumber.cases", "the number that a text begins with", [](const Words& given) {
    Words scanned;
    for (const NumberFormat format : {NumberFormat::kUnsigned, NumberFormat::kSigned, NumberFormat::kHexadecimal}) {
      const auto number = ScanNumber(given[0], format);
      scanned.push_back(number ? std::to_string(*number) : "none");
    }
    return scanned;
  });
}
