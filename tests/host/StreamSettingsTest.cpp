// Settings that are understood; tests/commandline has those that are not.
#include "host/channel/stream/StreamSettings.h"

#include <doctest/doctest.h>

TEST_CASE("addresses and lines are shown as they are understood") {
  for (const char* text : {"bench:4000", "10.0.0.1:65535", "[::1]:1", "[:]:1"}) {
    const auto address = host::ParseTcpAddress(text);
    REQUIRE(address);
    CHECK(address->Text() == text);
    CHECK(address->host.find('[') == std::string::npos);
  }
  const char* const lines[][2] = {{"COM3:115200", "COM3: 115200 baud, 8N1"},
                                  {"/dev/ttyS0:9600:5e2", "/dev/ttyS0: 9600 baud, 5E2"},
                                  {"a:b:300:7O1", "a:b: 300 baud, 7O1"}};
  for (const auto& [text, shown] : lines) {
    const auto line = host::ParseSerialLine(text);
    REQUIRE(line);
    CHECK(line->port + ": " + line->Settings() == shown);
  }
}
