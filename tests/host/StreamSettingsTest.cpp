#include "host/channel/stream/StreamSettings.h"

#include <doctest/doctest.h>

using namespace host;

namespace {

// The settings as they are shown; for text that is refused, why.
std::string Tcp(const std::string& text) {
  const auto address = ParseTcpAddress(text);
  return address ? address->host + " " + address->Text() : address.error();
}
std::string Serial(const std::string& text) {
  const auto line = ParseSerialLine(text);
  return line ? line->port + ": " + line->Settings() : line.error();
}

struct Row {
  const char* text;
  const char* outcome; // its beginning
};

} // namespace

TEST_CASE("TCP addresses") {
  const Row rows[] = {
      {"bench:4000", "bench bench:4000"},
      {"10.0.0.1:65535", "10.0.0.1 10.0.0.1:65535"},
      {"[::1]:1", "::1 [::1]:1"},
      {"bench", "expected tcp:HOST:PORT"},
      {":4000", "expected tcp:HOST:PORT"},
      {"[::1]", "expected tcp:HOST:PORT"},
      {"::1:4000", "an IPv6 address stands in brackets"},
      {"[::1:4000", "an IPv6 address stands in brackets"},
      {"::1]:4000", "an IPv6 address stands in brackets"},
      {"[]:4000", "an IPv6 address stands in brackets"},
      {"bench:0", "the port \"0\" is not a number from 1 to 65535"},
      {"bench:65536", "the port \"65536\""},
      {"bench:", "the port \"\""},
      {"bench:80x", "the port \"80x\""},
  };
  for (const Row& row : rows)
    CHECK_MESSAGE(Tcp(row.text).starts_with(row.outcome), row.text << " gives " << Tcp(row.text));
}

TEST_CASE("serial lines") {
  const Row rows[] = {
      {"COM3:115200", "COM3: 115200 baud, 8N1"},
      {"/dev/ttyS0:9600:5e2", "/dev/ttyS0: 9600 baud, 5E2"},
      {"a:b:300:7O1", "a:b: 300 baud, 7O1"},
      {"COM3", "expected serial:PORT:BAUD"},
      {"COM3:8N1", "expected serial:PORT:BAUD"},
      {":9600", "expected serial:PORT:BAUD"},
      {"COM3:9600:4N1", "\"4N1\" is neither a speed nor a format"},
      {"COM3:9600:9N1", "\"9N1\""},
      {"COM3:9600:8M1", "\"8M1\""},
      {"COM3:9600:8N0", "\"8N0\""},
      {"COM3:9600:8N3", "\"8N3\""},
      {"COM3:9600:8N1x", "\"8N1x\""},
      {"COM3:9600:", "\"\" is neither"},
      {"COM3:x:8N1", "the speed \"x\" is not a number"},
      {"COM3:0", "the speed \"0\""},
      {"COM3:4294967296", "the speed \"4294967296\""},
  };
  for (const Row& row : rows)
    CHECK_MESSAGE(Serial(row.text).starts_with(row.outcome), row.text << " gives " << Serial(row.text));
}
