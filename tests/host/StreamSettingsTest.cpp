#include "host/channel/stream/StreamSettings.h"

#include <doctest/doctest.h>

#include <string>

using namespace host;

namespace {

// What was understood, or the error.
std::string Tcp(const std::string& text) {
  std::string error;
  const auto address = ParseTcpAddress(text, error);
  return address ? address->host + " " + std::to_string(address->port) + " " + address->Text() : error;
}

std::string Serial(const std::string& text) {
  std::string error;
  const auto line = ParseSerialLine(text, error);
  return line ? line->port + " " + line->Settings() : error;
}

} // namespace

TEST_CASE("settings: hosts and ports, serial lines") {
  struct Case {
    std::string (*understood)(const std::string& text);
    const char* text;
    const char* result;
  };
  const Case cases[] = {
      {Tcp, "bench-3:1", "bench-3 1 bench-3:1"},
      {Tcp, "[fe80::1%eth0]:22", "fe80::1%eth0 22 [fe80::1%eth0]:22"},
      {Tcp, "", "expected tcp:HOST:PORT, as in tcp:192.168.1.20:4000"},
      {Tcp, "::1:4000", "an IPv6 address stands in brackets, as in tcp:[::1]:4000"},
      {Tcp, "host:65536", "the port \"65536\" is not a number from 1 to 65535"},
      {Serial, "\\\\.\\COM12:4294967295", "\\\\.\\COM12 4294967295 baud, 8N1"},
      {Serial, "/dev/pci-0:14.0:1:115200:7e2", "/dev/pci-0:14.0:1 115200 baud, 7E2"},
      {Serial, "", "expected serial:PORT:BAUD[:FORMAT], as in serial:COM3:115200:8N1 or serial:/dev/ttyUSB0:115200"},
      {Serial, "COM3:9600:4N1",
       "\"4N1\" is neither a speed nor a format: data bits 5 to 8, parity N, E or O, stop bits 1 or 2, as in 8N1"},
      {Serial, "COM3:4294967296", "the speed \"4294967296\" is not a number of bits per second"},
  };
  for (const Case& each : cases) {
    CAPTURE(each.text);
    CHECK(each.understood(each.text) == each.result);
  }
}
