// A link with overlapped operations: what sockets and serial ports have in common.
#pragma once

#include "host/channel/stream/Link.h"
#include "host/support/win32/Handle.h"

#include <array>
#include <windows.h>

namespace host {

// One operation that the system carries out on its own while `pending`; it uses the memory that it was started with
// until then.
class Operation {
public:
  Operation(); // throws std::bad_alloc when the system has no event left
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;

  // A fresh record for the call that starts the operation.
  OVERLAPPED* Prepare();
  HANDLE Done() const { return m_done.Get(); }
  OVERLAPPED* Record() { return &m_record; }

  bool pending = false;

private:
  const Handle m_done;
  OVERLAPPED m_record{};
};

// How an operation went. `error` is a code of the system's, 0 for success.
struct OperationResult {
  DWORD count = 0;
  DWORD error = 0;
};

class OverlappedLink : public Link {
public:
  using Link::Link;

  Movement Move(std::string_view toSend, bool mayReceive, LinkClock::time_point until) final;

protected:
  // For `Open`: how much moves in one operation. Pieces are what can be counted and ended; the larger, the faster.
  void SetPiece(std::size_t bytes) { m_piece = bytes < m_received.size() ? bytes : m_received.size(); }
  // For the destructor of the derived class, as long as the handle is open: ends what is pending and waits for that.
  void EndOperations(HANDLE handle);

  // Each starts an operation, or fails at once; the answer is a code of the system's, 0 for success.
  virtual DWORD StartReceiving(char* buffer, DWORD size, OVERLAPPED* record) = 0;
  virtual DWORD StartSending(const char* bytes, DWORD size, OVERLAPPED* record) = 0;
  // Of an operation that has ended.
  virtual OperationResult Result(OVERLAPPED* record) = 0;
  // Nothing was received and nothing failed: the failure to report, or nothing when that is harmless.
  virtual LinkFailure EndOfStream() = 0;
  // For systems that leave a pending receive alone when the other side ends: an event that tells of the end, and what
  // the end was; nothing when bytes are still to be read before it. Null, the default: there is no such event.
  virtual HANDLE EndEvent() const { return nullptr; }
  virtual LinkFailure CheckEnd() { return {}; }
  // For drivers that leave pending operations alone when the device is gone: asked while nothing moves, several times a
  // second. The failure to report, or nothing.
  virtual LinkFailure CheckDevice() { return {}; }

private:
  // False when nothing has happened for a while.
  bool Wait(LinkClock::time_point until);
  void FinishReceiving(Movement& movement);
  void FinishSending(Movement& movement);

  Operation m_receiving;
  Operation m_sending;
  std::size_t m_piece = 65536;
  std::array<char, 65536> m_received;
};

} // namespace host
