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

TEST_CASE("settings: hosts and ports") {
  const std::string form = "expected tcp:HOST:PORT, as in tcp:192.168.1.20:4000";
  const std::string brackets = "an IPv6 address stands in brackets, as in tcp:[::1]:4000";
  const struct {
    const char* text;
    std::string result;
  } cases[] = {
      {"bench-3:1", "bench-3 1 bench-3:1"},
      {"127.0.0.1:65535", "127.0.0.1 65535 127.0.0.1:65535"},
      {"[fe80::1%eth0]:22", "fe80::1%eth0 22 [fe80::1%eth0]:22"},
      {"", form},
      {"host", form},
      {":4000", form},
      {"[::1]", form},
      {"::1:4000", brackets},
      {"[::1:4000", brackets},
      {"[]:4000", brackets},
      {"host:", "the port \"\" is not a number from 1 to 65535"},
      {"host:0", "the port \"0\" is not a number from 1 to 65535"},
      {"host:65536", "the port \"65536\" is not a number from 1 to 65535"},
      {"host:-1", "the port \"-1\" is not a number from 1 to 65535"},
      {"host:80 ", "the port \"80 \" is not a number from 1 to 65535"},
  };
  for (const auto& each : cases) {
    CAPTURE(each.text);
    CHECK(Tcp(each.text) == each.result);
  }
}

TEST_CASE("settings: serial lines") {
  const std::string form =
      "expected serial:PORT:BAUD[:FORMAT], as in serial:COM3:115200:8N1 or serial:/dev/ttyUSB0:115200";
  const auto neither = [](const std::string& text) {
    return "\"" + text +
           "\" is neither a speed nor a format: data bits 5 to 8, parity N, E or O, stop bits 1 or 2, as in 8N1";
  };
  const struct {
    const char* text;
    std::string result;
  } cases[] = {
      {"COM3:115200", "COM3 115200 baud, 8N1"},
      {"COM3:9600:7e2", "COM3 9600 baud, 7E2"},
      {"COM3:50:5O1", "COM3 50 baud, 5O1"},
      {"\\\\.\\COM12:4294967295", "\\\\.\\COM12 4294967295 baud, 8N1"},
      {"/dev/by-path/pci-0:14.0-usb-0:1:1.0:115200:8N1", "/dev/by-path/pci-0:14.0-usb-0:1:1.0 115200 baud, 8N1"},
      {"", form},
      {"COM3", form},
      {":9600", form},
      {"COM3:8N1", form},
      {"COM3:9600:", neither("")},
      {"COM3:9600:4N1", neither("4N1")},
      {"COM3:9600:9N1", neither("9N1")},
      {"COM3:9600:8X1", neither("8X1")},
      {"COM3:9600:8.1", neither("8.1")},
      {"COM3:9600:8N3", neither("8N3")},
      {"COM3:9600:8N1 ", neither("8N1 ")},
      {"COM3:fast", neither("fast")},
      {"COM3:-9600", neither("-9600")},
      {"COM3:0", "the speed \"0\" is not a number of bits per second"},
      {"COM3:4294967296", "the speed \"4294967296\" is not a number of bits per second"},
  };
  for (const auto& each : cases) {
    CAPTURE(each.text);
    CHECK(Serial(each.text) == each.result);
  }
}
