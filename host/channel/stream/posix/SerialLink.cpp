#include "host/channel/stream/posix/DescriptorLink.h"
#include "host/support/SystemError.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <iterator>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace host {
namespace {

// The system numbers the speeds that it knows.
struct Speed {
  std::uint32_t baud;
  speed_t code;
};
constexpr Speed kSpeeds[] = {
    {300, B300},         {600, B600},         {1200, B1200},       {2400, B2400},       {4800, B4800},
    {9600, B9600},       {19200, B19200},     {38400, B38400},     {57600, B57600},     {115200, B115200},
    {230400, B230400},   {460800, B460800},   {500000, B500000},   {576000, B576000},   {921600, B921600},
    {1000000, B1000000}, {1152000, B1152000}, {1500000, B1500000}, {2000000, B2000000}, {2500000, B2500000},
    {3000000, B3000000}, {3500000, B3500000}, {4000000, B4000000},
};

// A raw line of this kind, without flow control, that ignores the modem's lines.
void Describe(const SerialLine& line, speed_t speed, termios& settings) {
  cfmakeraw(&settings);
  settings.c_cc[VMIN] = 1; // so that nothing to read and the end of the stream look different
  settings.c_cc[VTIME] = 0;
  settings.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF | IXANY | INPCK);
  settings.c_cflag &= ~static_cast<tcflag_t>(CSIZE | CSTOPB | PARENB | PARODD | CRTSCTS);
  constexpr tcflag_t kSizes[] = {CS5, CS6, CS7, CS8};
  settings.c_cflag |= kSizes[line.dataBits - 5] | CREAD | CLOCAL;
  if (line.stopBits == 2)
    settings.c_cflag |= CSTOPB;
  if (line.parity != 'N')
    settings.c_cflag |= line.parity == 'O' ? PARENB | PARODD : PARENB;
  cfsetispeed(&settings, speed);
  cfsetospeed(&settings, speed);
}

class SerialLink : public DescriptorLink {
public:
  SerialLink(const SerialLine& line, Signal& wake) : DescriptorLink(wake), m_line(line) {}

  // Without the flush, closing would wait until the line has taken what is left.
  ~SerialLink() override {
    if (Attached().IsOpen()) {
      tcflush(Attached().Number(), TCIOFLUSH);
      ioctl(Attached().Number(), TIOCNXCL);
    }
  }

  LinkOpened Open() override {
    const auto* const speed = std::find_if(std::begin(kSpeeds), std::end(kSpeeds),
                                           [this](const Speed& each) { return each.baud == m_line.baud; });
    if (speed == std::end(kSpeeds))
      return tl::unexpected("This system has no speed of " + std::to_string(m_line.baud) + " baud");
    // Not blocking, or opening would wait for a modem's carrier.
    Descriptor port(open(m_line.port.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    termios settings = {};
    if (!port.IsOpen())
      return tl::unexpected(SystemErrorText(errno));
    if (tcgetattr(port.Number(), &settings) != 0)
      return tl::unexpected(m_line.port + " is not a serial port");
    Describe(m_line, speed->code, settings);
    // Two programs on one port would each get a part of the answers.
    if (tcsetattr(port.Number(), TCSANOW, &settings) != 0 || ioctl(port.Number(), TIOCEXCL) != 0)
      return tl::unexpected(SystemErrorText(errno));
    Attach(std::move(port));
    return {};
  }

private:
  std::ptrdiff_t Write(const char* bytes, std::size_t size) override { return write(Attached().Number(), bytes, size); }
  const char* EndOfStream() const override { return "The serial port is gone"; }

  const SerialLine m_line;
};

} // namespace

std::unique_ptr<Link> MakeSerialLink(const SerialLine& line, Signal& wake) {
  return std::make_unique<SerialLink>(line, wake);
}

} // namespace host
