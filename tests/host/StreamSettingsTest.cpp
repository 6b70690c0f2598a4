#include "host/channel/stream/StreamSettings.h"

#include <doctest/doctest.h>

using namespace host;

// What cannot be understood stands in tests/channels/check_channels.py.
TEST_CASE("settings: hosts and ports, serial lines") {
  std::string error;
  for (const std::string text : {"bench-3:1", "[fe80::1%eth0]:22"}) {
    const auto address = ParseTcpAddress(text, error);
    REQUIRE_MESSAGE(address, error);
    CHECK(address->Text() == text);
    CHECK(address->host.find('[') == std::string::npos);
  }
  const struct {
    const char* text;
    const char* port;
    const char* settings;
  } lines[] = {{"\\\\.\\COM12:4294967295", "\\\\.\\COM12", "4294967295 baud, 8N1"},
               {"/dev/pci-0:14.0:1:115200:7e2", "/dev/pci-0:14.0:1", "115200 baud, 7E2"}};
  for (const auto& each : lines) {
    const auto line = ParseSerialLine(each.text, error);
    REQUIRE_MESSAGE(line, error);
    CHECK(line->port == each.port);
    CHECK(line->Settings() == each.settings);
  }
}
