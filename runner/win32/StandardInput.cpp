#include "runner/StandardInput.h"

#include "host/support/win32/Handle.h"

#include <array>
#include <thread>
#include <utility>
#include <windows.h>

namespace {

constexpr char kEndKey = '\x1A'; // Ctrl+Z

HANDLE Input() {
  return GetStdHandle(STD_INPUT_HANDLE);
}

// In the code page of scripts.
std::string Narrow(const wchar_t* text, DWORD length) {
  std::string narrow(length * 2 + 1, '\0');
  const int size = WideCharToMultiByte(CP_ACP, 0, text, static_cast<int>(length), narrow.data(),
                                       static_cast<int>(narrow.size()), nullptr, nullptr);
  narrow.resize(static_cast<std::size_t>(size));
  return narrow;
}

// What one read brings; nothing at the end.
std::string ReadPiece() {
  DWORD count = 0;
  if (!IsInputTerminal()) {
    std::array<char, 4096> piece;
    return ReadFile(Input(), piece.data(), piece.size(), &count, nullptr) ? std::string(piece.data(), count)
                                                                          : std::string();
  }
  std::array<wchar_t, 4096> line;
  do {
    SetLastError(ERROR_SUCCESS);
    if (!ReadConsoleW(Input(), line.data(), line.size(), &count, nullptr) && GetLastError() != ERROR_OPERATION_ABORTED)
      return {};
  } while (count == 0 && GetLastError() == ERROR_OPERATION_ABORTED); // by Ctrl+C, which is told elsewhere
  std::string text = Narrow(line.data(), count);
  return text.find(kEndKey) == std::string::npos ? text : std::string();
}

// Reads on a thread of its own: the system has nothing that waits for a pipe and an event at once. The thread ends with
// the process, because nothing ends its waiting before.
class Reader {
public:
  Reader() {
    std::thread([this] { Serve(); }).detach();
  }

  // An event that stays set until the piece is taken. Reading begins here, if it has not.
  HANDLE Begin() {
    if (!std::exchange(m_isReading, true))
      SetEvent(m_wanted.Get());
    return m_arrived.Get();
  }
  std::string Take() {
    ResetEvent(m_arrived.Get());
    m_isReading = false;
    return std::move(m_piece);
  }

private:
  void Serve() {
    for (;;) {
      WaitForSingleObject(m_wanted.Get(), INFINITE);
      m_piece = ReadPiece();
      SetEvent(m_arrived.Get());
    }
  }

  const host::Handle m_wanted{CreateEventA(nullptr, FALSE, FALSE, nullptr)};
  const host::Handle m_arrived{CreateEventA(nullptr, TRUE, FALSE, nullptr)};
  bool m_isReading = false; // of the thread that waits
  std::string m_piece;      // the reading thread's until it has arrived
};

} // namespace

InputEvent WaitForInput(const host::Signal& closed, const host::Signal* interrupted, std::string& bytes) {
  static Reader& reader = *new Reader; // lives as long as its thread
  const auto handleOf = [](const host::Signal& signal) { return reinterpret_cast<HANDLE>(signal.Native()); };
  std::array<HANDLE, 3> waited{handleOf(closed), reader.Begin(), nullptr};
  if (interrupted)
    waited[2] = handleOf(*interrupted);
  switch (WaitForMultipleObjects(interrupted ? 3 : 2, waited.data(), FALSE, INFINITE)) {
  case WAIT_OBJECT_0:
    return InputEvent::kClosed;
  case WAIT_OBJECT_0 + 2:
    return InputEvent::kInterrupted;
  default:
    const std::string piece = reader.Take();
    bytes += piece;
    return piece.empty() ? InputEvent::kEnd : InputEvent::kBytes;
  }
}

bool IsInputTerminal() {
  DWORD mode = 0;
  return GetConsoleMode(Input(), &mode) != FALSE;
}

const char* EndKeys() {
  return "Ctrl+Z and Enter";
}
