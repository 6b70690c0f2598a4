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

// A raw line of this kind, without flow control, that ignores the modem's lines but says that the host is there.
DCB Describe(const SerialLine& line) {
  DCB settings = {};
  settings.DCBlength = sizeof settings;
  settings.BaudRate = line.baud;
  settings.ByteSize = static_cast<BYTE>(line.dataBits);
  settings.Parity = line.parity == 'E' ? EVENPARITY : line.parity == 'O' ? ODDPARITY : NOPARITY;
  settings.StopBits = line.stopBits == 2 ? TWOSTOPBITS : ONESTOPBIT;
  settings.fBinary = TRUE;
  settings.fDtrControl = DTR_CONTROL_ENABLE;
  settings.fRtsControl = RTS_CONTROL_ENABLE;
  return settings;
}

class SerialLink : public OverlappedLink {
public:
  SerialLink(const SerialLine& line, Signal& wake) : OverlappedLink(wake), m_line(line) {}

  ~SerialLink() override {
    if (m_port.IsOpen())
      EndOperations(m_port.Get());
  }

  LinkOpened Open() override {
    m_port = Handle(CreateFileA(DeviceName(m_line.port).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr));
    if (!m_port.IsOpen())
      return tl::unexpected(LastFailure());
    DCB settings = {};
    settings.DCBlength = sizeof settings;
    if (GetCommState(m_port.Get(), &settings) == FALSE)
      return tl::unexpected(m_line.port + " is not a serial port");
    settings = Describe(m_line);
    // A receive operation ends when nothing came for 1 ms after a byte, or when the piece is full.
    COMMTIMEOUTS timeouts = {1, 0, 0, 0, 0};
    if (SetCommState(m_port.Get(), &settings) == FALSE || SetCommTimeouts(m_port.Get(), &timeouts) == FALSE)
      return tl::unexpected(LastFailure());
    SetupComm(m_port.Get(), kDriverBuffer, kDriverBuffer);
    SetPiece(std::max(m_line.baud / kBitsPerByte / kPiecesPerSecond, 16U));
    return {};
  }

private:
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
  // A port that is gone fails.
  LinkFailure EndOfStream() override { return {}; }

  const SerialLine m_line;
  Handle m_port;
};

} // namespace

std::unique_ptr<Link> MakeSerialLink(const SerialLine& line, Signal& wake) {
  return std::make_unique<SerialLink>(line, wake);
}

} // namespace host
