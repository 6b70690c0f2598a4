#include "host/channel/stream/win32/OverlappedLink.h"

#include "host/support/SystemError.h"

#include <algorithm>
#include <new>
#include <utility>

namespace host {
namespace {

// After which the device is asked whether it is there.
constexpr std::chrono::milliseconds kLongestWait{400};

LinkFailure FailureOf(DWORD error) {
  return error != 0 ? SystemErrorText(static_cast<int>(error)) : LinkFailure();
}

bool IsRaised(HANDLE event) {
  return event && WaitForSingleObject(event, 0) == WAIT_OBJECT_0;
}

bool HasEnded(const Operation& operation) {
  return operation.pending && IsRaised(operation.Done());
}

} // namespace

Operation::Operation() : m_done(CreateEventA(nullptr, TRUE, FALSE, nullptr)) {
  if (!m_done.IsOpen())
    throw std::bad_alloc();
}

OVERLAPPED* Operation::Prepare() {
  m_record = {};
  m_record.hEvent = Done();
  return &m_record;
}

Movement OverlappedLink::Move(std::string_view toSend, bool mayReceive, LinkClock::time_point until) {
  Movement movement;
  const auto start = [&](Operation& operation, auto begin) {
    if (operation.pending || !movement.failure.empty())
      return;
    movement.failure = FailureOf(begin(operation.Prepare()));
    operation.pending = movement.failure.empty();
  };
  if (mayReceive) {
    start(m_receiving, [this](OVERLAPPED* record) {
      return StartReceiving(m_received.data(), static_cast<DWORD>(m_piece), record);
    });
  }
  if (!toSend.empty()) {
    const auto size = static_cast<DWORD>(std::min(toSend.size(), m_piece));
    start(m_sending, [&](OVERLAPPED* record) { return StartSending(toSend.data(), size, record); });
  }
  if (movement.failure.empty())
    movement.failure = Wait(until) ? LinkFailure() : CheckDevice();
  // What has arrived counts also when sending has just failed.
  FinishReceiving(movement);
  FinishSending(movement);
  if (movement.failure.empty() && m_receiving.pending && IsRaised(EndEvent())) {
    LinkFailure end = CheckEnd();
    FinishReceiving(movement); // it may have taken the last bytes since it was looked at
    if (movement.failure.empty())
      movement.failure = std::move(end);
  }
  return movement;
}

bool OverlappedLink::Wait(LinkClock::time_point until) {
  const auto wake = reinterpret_cast<HANDLE>(WakeSignal().Native());
  HANDLE handles[4] = {wake};
  DWORD count = 1;
  for (const Operation* operation : {&m_receiving, &m_sending}) {
    if (operation->pending)
      handles[count++] = operation->Done();
  }
  if (m_receiving.pending && EndEvent())
    handles[count++] = EndEvent();
  const auto timeout = static_cast<DWORD>(MillisecondsUntil(until, kLongestWait));
  const DWORD ended = WaitForMultipleObjects(count, handles, FALSE, timeout);
  if (ended == WAIT_OBJECT_0)
    WakeSignal().Clear();
  return ended != WAIT_TIMEOUT;
}

void OverlappedLink::FinishReceiving(Movement& movement) {
  if (!HasEnded(m_receiving))
    return;
  m_receiving.pending = false;
  const OperationResult result = Result(m_receiving.Record());
  movement.received = {m_received.data(), result.count};
  if (movement.failure.empty())
    movement.failure = result.error == 0 && result.count == 0 ? EndOfStream() : FailureOf(result.error);
}

void OverlappedLink::FinishSending(Movement& movement) {
  if (!HasEnded(m_sending))
    return;
  m_sending.pending = false;
  const OperationResult result = Result(m_sending.Record());
  movement.sent = result.count;
  if (movement.failure.empty())
    movement.failure = FailureOf(result.error);
}

void OverlappedLink::EndOperations(HANDLE handle) {
  CancelIoEx(handle, nullptr);
  for (Operation* operation : {&m_receiving, &m_sending}) {
    if (operation->pending)
      WaitForSingleObject(operation->Done(), INFINITE);
    operation->pending = false;
  }
}

} // namespace host
