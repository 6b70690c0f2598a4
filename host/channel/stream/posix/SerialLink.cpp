#include "host/channel/stream/posix/DescriptorLink.h"
#include "host/support/SystemError.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <iterator>
#include <poll.h>
#include <sys/file.h>
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

// A raw line of this kind, that ignores the modem's lines but for flow control.
void Describe(const SerialLine& line, FlowControl flow, speed_t speed, termios& settings) {
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
  if (flow == FlowControl::kXonXoff)
    settings.c_iflag |= IXON | IXOFF;
  if (flow == FlowControl::kRtsCts)
    settings.c_cflag |= CRTSCTS;
  cfsetispeed(&settings, speed);
  cfsetospeed(&settings, speed);
}

// Why a port could not be opened, in words that tell what to do where the system's do not.
LinkFailure OpenFailure(int error) {
  switch (error) {
  case ENOENT:
  case ENXIO:
  case ENODEV:
    return "There is no such serial port";
  case EBUSY:
  case EWOULDBLOCK:
    return "The serial port is in use by another program";
  case EACCES:
    return "No permission to use the serial port; its group is dialout on most systems";
  default:
    return SystemErrorText(error);
  }
}

class SerialLink : public DescriptorLink {
public:
  SerialLink(const SerialLine& line, const SerialOptions& options, Signal& wake)
      : DescriptorLink(wake), m_line(line), m_options(options) {}

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
      return tl::unexpected(OpenFailure(errno));
    if (tcgetattr(port.Number(), &settings) != 0)
      return tl::unexpected(m_line.port + " is not a serial port");
    Describe(m_line, m_options.flow, speed->code, settings);
    // Two programs on one port would each get a part of the answers. A lock shows in the programs that look for one,
    // and also to the superuser; the rest is told by the system.
    if (flock(port.Number(), LOCK_EX | LOCK_NB) != 0 || ioctl(port.Number(), TIOCEXCL) != 0)
      return tl::unexpected(OpenFailure(errno));
    if (tcsetattr(port.Number(), TCSANOW, &settings) != 0)
      return tl::unexpected(SystemErrorText(errno));
    Attach(std::move(port));
    return SetModemLines().and_then([this] { return SendBreak(); });
  }

private:
  LinkOpened SetModemLines() const {
    const std::pair<int, std::optional<bool>> wanted[] = {{TIOCM_DTR, m_options.dtr}, {TIOCM_RTS, m_options.rts}};
    for (const auto& [line, on] : wanted) {
      if (on && ioctl(Attached().Number(), *on ? TIOCMBIS : TIOCMBIC, &line) != 0) {
        return tl::unexpected(std::string("The serial port cannot set ") + (line == TIOCM_DTR ? "DTR" : "RTS") + ": " +
                              SystemErrorText(errno));
      }
    }
    return {};
  }

  // Of just this length, which `tcsendbreak` does not promise; the channel's end cuts it short.
  LinkOpened SendBreak() {
    if (m_options.breakTime.count() == 0)
      return {};
    const auto end = LinkClock::now() + m_options.breakTime;
    pollfd wait = {static_cast<int>(WakeSignal().Native()), POLLIN, 0};
    bool done = ioctl(Attached().Number(), TIOCSBRK) == 0;
    while (done && poll(&wait, 1, MillisecondsUntil(end, m_options.breakTime)) < 0 && errno == EINTR) {
    }
    done = done && ioctl(Attached().Number(), TIOCCBRK) == 0;
    if (!done)
      return tl::unexpected("The serial port cannot send a break: " + SystemErrorText(errno));
    return {};
  }

  std::ptrdiff_t Write(const char* bytes, std::size_t size) override { return write(Attached().Number(), bytes, size); }
  const char* EndOfStream() const override { return "The serial port is gone"; }

  const SerialLine m_line;
  const SerialOptions m_options;
};

} // namespace

std::unique_ptr<Link> MakeSerialLink(const SerialLine& line, const SerialOptions& options, Signal& wake) {
  return std::make_unique<SerialLink>(line, options, wake);
}

} // namespace host
