#include "host/channel/stream/win32/OverlappedLink.h"
#include "host/support/SystemError.h"
#include "host/support/Text.h"

#include <algorithm>

namespace host {
namespace {

// Bytes of the driver's own buffers, a wish.
constexpr DWORD kDriverBuffer = 65536;
// The parts of a second that a piece takes on the line: an answer without a pause shows up at least this often.
constexpr std::uint32_t kPiecesPerSecond = 50;
constexpr std::uint32_t kBitsPerByte = 10; // start and stop bits included

LinkFailure LastFailure() {
  return SystemErrorText(static_cast<int>(GetLastError()));
}

// From COM10 on, only the device name space knows the ports.
std::string DeviceName(const std::string& port) {
  return port.starts_with('\\') ? port : "\\\\.\\" + port;
}

// Why a port could not be opened, in words that tell what to do where the system's do not.
LinkFailure OpenFailure(DWORD error) {
  switch (error) {
  case ERROR_FILE_NOT_FOUND:
  case ERROR_PATH_NOT_FOUND:
    return "There is no such serial port";
  case ERROR_ACCESS_DENIED: // so say the drivers
  case ERROR_SHARING_VIOLATION:
    return "The serial port is in use by another program";
  default:
    return SystemErrorText(static_cast<int>(error));
  }
}

// A raw line of this kind, that ignores the modem's lines but for flow control, and says that the host is there unless
// it is told otherwise.
DCB Describe(const SerialLine& line, const SerialOptions& options) {
  DCB settings = {};
  settings.DCBlength = sizeof settings;
  settings.BaudRate = line.baud;
  settings.ByteSize = static_cast<BYTE>(line.dataBits);
  settings.Parity = line.parity == 'E' ? EVENPARITY : line.parity == 'O' ? ODDPARITY : NOPARITY;
  settings.StopBits = line.stopBits == 2 ? TWOSTOPBITS : ONESTOPBIT;
  settings.fBinary = TRUE;
  settings.fDtrControl = options.dtr.value_or(true) ? DTR_CONTROL_ENABLE : DTR_CONTROL_DISABLE;
  settings.fRtsControl = options.rts.value_or(true) ? RTS_CONTROL_ENABLE : RTS_CONTROL_DISABLE;
  if (options.flow == FlowControl::kRtsCts) {
    settings.fOutxCtsFlow = TRUE;
    settings.fRtsControl = RTS_CONTROL_HANDSHAKE;
  }
  if (options.flow == FlowControl::kXonXoff) {
    settings.fOutX = TRUE;
    settings.fInX = TRUE;
    settings.XonChar = 0x11;
    settings.XoffChar = 0x13;
    settings.XonLim = kDriverBuffer / 4;
    settings.XoffLim = kDriverBuffer / 4;
  }
  return settings;
}

class SerialLink : public OverlappedLink {
public:
  SerialLink(const SerialLine& line, const SerialOptions& options, Signal& wake)
      : OverlappedLink(wake), m_line(line), m_options(options) {}

  ~SerialLink() override {
    if (m_port.IsOpen())
      EndOperations(m_port.Get());
  }

  LinkOpened Open() override {
    m_port = Handle(CreateFileA(DeviceName(m_line.port).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr));
    if (!m_port.IsOpen())
      return tl::unexpected(OpenFailure(GetLastError()));
    DCB settings = {};
    settings.DCBlength = sizeof settings;
    if (GetCommState(m_port.Get(), &settings) == FALSE)
      return tl::unexpected(m_line.port + " is not a serial port");
    settings = Describe(m_line, m_options);
    // A receive operation ends when nothing came for 1 ms after a byte, or when the piece is full.
    COMMTIMEOUTS timeouts = {1, 0, 0, 0, 0};
    if (SetCommState(m_port.Get(), &settings) == FALSE || SetCommTimeouts(m_port.Get(), &timeouts) == FALSE)
      return tl::unexpected(LastFailure());
    SetupComm(m_port.Get(), kDriverBuffer, kDriverBuffer);
    SetPiece(std::max(m_line.baud / kBitsPerByte / kPiecesPerSecond, 16U));
    return SendBreak();
  }

private:
  // The channel's end cuts it short.
  LinkOpened SendBreak() {
    if (m_options.breakTime.count() == 0)
      return {};
    bool done = SetCommBreak(m_port.Get()) != FALSE;
    if (done) {
      const auto wake = reinterpret_cast<HANDLE>(WakeSignal().Native());
      WaitForSingleObject(wake, static_cast<DWORD>(m_options.breakTime.count()));
      done = ClearCommBreak(m_port.Get()) != FALSE;
    }
    if (!done)
      return tl::unexpected("The serial port cannot send a break: " + LastFailure());
    return {};
  }

  DWORD StartReceiving(char* buffer, DWORD size, OVERLAPPED* record) override {
    return Started(ReadFile(m_port.Get(), buffer, size, nullptr, record));
  }
  DWORD StartSending(const char* bytes, DWORD size, OVERLAPPED* record) override {
    return Started(WriteFile(m_port.Get(), bytes, size, nullptr, record));
  }
  static DWORD Started(BOOL done) {
    const DWORD error = done != FALSE ? 0 : GetLastError();
    return error == ERROR_IO_PENDING ? 0 : error;
  }
  OperationResult Result(OVERLAPPED* record) override {
    OperationResult result;
    // That the time was up is a usual end of receiving, with bytes or without; Wine calls it a failure.
    if (GetOverlappedResult(m_port.Get(), record, &result.count, FALSE) == FALSE && GetLastError() != ERROR_TIMEOUT)
      result = {0, GetLastError()};
    return result;
  }
  LinkFailure CheckDevice() override {
    DWORD errors = 0;
    return ClearCommError(m_port.Get(), &errors, nullptr) != FALSE ? LinkFailure() : LastFailure();
  }
  // A port that is gone fails.
  LinkFailure EndOfStream() override { return {}; }

  const SerialLine m_line;
  const SerialOptions m_options;
  Handle m_port;
};

} // namespace

std::unique_ptr<Link> MakeSerialLink(const SerialLine& line, const SerialOptions& options, Signal& wake) {
  return std::make_unique<SerialLink>(line, options, wake);
}

} // namespace host
