// What a serial port is asked for. A pseudo terminal keeps only a part of it, so the asking itself is looked at.
#include "host/channel/stream/LineOptions.h"
#include "host/channel/stream/Link.h"

#include <doctest/doctest.h>

#include <cerrno>
#include <cstdarg>
#include <fcntl.h>
#include <stdlib.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <termios.h>
#include <unistd.h>

namespace {
termios asked;
int refused = 0;
std::string moved; // lines of the modem and breaks
host::Signal wake;
} // namespace

// In place of the C library's.
int tcsetattr(int, int, const termios* settings) noexcept {
  asked = *settings;
  errno = refused;
  return refused ? -1 : 0;
}

// The same. A pseudo terminal has none of these lines.
int ioctl(int device, unsigned long request, ...) noexcept {
  std::va_list arguments;
  va_start(arguments, request);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  if (request == TIOCMBIS || request == TIOCMBIC) {
    moved += *static_cast<int*>(argument) == TIOCM_DTR ? "dtr" : "rts";
    moved += request == TIOCMBIS ? "+ " : "- ";
    return 0;
  }
  if (request == TIOCSBRK || request == TIOCCBRK)
    moved += request == TIOCSBRK ? "break+ " : "break- ";
  return static_cast<int>(syscall(SYS_ioctl, device, request, argument));
}

TEST_CASE("a serial port is asked for a raw line of its format") {
  struct Row {
    const char* settings;
    speed_t speed;
    tcflag_t format;
    const char* options = "";
    tcflag_t input = 0;
    const char* moved = "";
  };
  const Row rows[] = {{":300:5O1", B300, CS5 | PARENB | PARODD},
                      {":9600:6n2", B9600, CS6 | CSTOPB},
                      {":115200:7E2", B115200, CS7 | CSTOPB | PARENB},
                      {":4000000", B4000000, CS8},
                      {":9600", B9600, CS8, ",flow=xonxoff,dtr=on", IXON | IXOFF, "dtr+ "},
                      {":9600", B9600, CS8 | CRTSCTS, ",flow=rtscts,dtr=off", 0, "dtr- "},
                      {":9600", B9600, CS8, ",break=1,rts=off,dtr=on", 0, "dtr+ rts- break+ break- "},
                      {":9600", B9600, CS8, ",rts=on,flow=none", 0, "rts+ "}};
  const int device = posix_openpt(O_RDWR | O_NOCTTY);
  REQUIRE(grantpt(device) == 0);
  REQUIRE(unlockpt(device) == 0);
  const std::string port = ptsname(device);
  for (const Row& row : rows) {
    CAPTURE(row.settings);
    const auto link = host::MakeSerialLink(*host::ParseSerialLine(port + row.settings),
                                           host::ParseLineOptions(host::LineKind::kSerial, row.options)->serial, wake);
    moved.clear();
    REQUIRE(link->Open());
    CHECK((asked.c_cflag & ~static_cast<tcflag_t>(CBAUD)) == (row.format | CREAD | CLOCAL));
    CHECK(cfgetospeed(&asked) == row.speed);
    CHECK((asked.c_iflag | (asked.c_oflag & OPOST)) == row.input);
    CHECK(moved == row.moved);
    CHECK(asked.c_cc[VMIN] == 1);
  }
  refused = EINVAL;
  CHECK_FALSE(host::MakeSerialLink(*host::ParseSerialLine(port + ":9600"), {}, wake)->Open());
  refused = 0;
  close(device);
}
