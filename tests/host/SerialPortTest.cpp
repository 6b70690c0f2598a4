// What a serial port is asked for. A pseudo terminal keeps only a part of it, so the asking itself is looked at.
#include "host/channel/stream/Link.h"

#include <doctest/doctest.h>

#include <cerrno>
#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

namespace {
termios asked;
int refused = 0;
} // namespace

// In place of the C library's.
int tcsetattr(int, int, const termios* settings) noexcept {
  asked = *settings;
  errno = refused;
  return refused ? -1 : 0;
}

TEST_CASE("a serial port is asked for a raw line of its format") {
  struct Row {
    const char* settings;
    speed_t speed;
    tcflag_t format;
  };
  const Row rows[] = {{":300:5O1", B300, CS5 | PARENB | PARODD},
                      {":9600:6n2", B9600, CS6 | CSTOPB},
                      {":115200:7E2", B115200, CS7 | CSTOPB | PARENB},
                      {":4000000", B4000000, CS8}};
  const int device = posix_openpt(O_RDWR | O_NOCTTY);
  REQUIRE(grantpt(device) == 0);
  REQUIRE(unlockpt(device) == 0);
  const std::string port = ptsname(device);
  for (const Row& row : rows) {
    CAPTURE(row.settings);
    const auto link = host::MakeSerialLink(*host::ParseSerialLine(port + row.settings));
    REQUIRE(link->Open());
    CHECK((asked.c_cflag & ~static_cast<tcflag_t>(CBAUD)) == (row.format | CREAD | CLOCAL));
    CHECK(cfgetospeed(&asked) == row.speed);
    CHECK((asked.c_iflag | (asked.c_oflag & OPOST)) == 0);
    CHECK(asked.c_cc[VMIN] == 1);
  }
  refused = EINVAL;
  CHECK_FALSE(host::MakeSerialLink(*host::ParseSerialLine(port + ":9600"))->Open());
  refused = 0;
  close(device);
}
