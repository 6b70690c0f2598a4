#include "platform/Platform.h"

#include <windows.h>

#include <new>

namespace platform {

struct StopEvent::Body {
  HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);

  ~Body() {
    if (event)
      CloseHandle(event);
  }
};

StopEvent::StopEvent() : m_body(std::make_unique<Body>()) {
  if (!m_body->event)
    throw std::bad_alloc();
}

StopEvent::~StopEvent() = default;

void StopEvent::Set() {
  SetEvent(m_body->event);
  m_set.store(true, std::memory_order_release);
}

void StopEvent::Reset() {
  m_abandoned.store(false, std::memory_order_release);
  m_set.store(false, std::memory_order_release);
  ResetEvent(m_body->event);
}

bool StopEvent::Wait(std::uint32_t milliseconds) const {
  static_assert(kForever == INFINITE);
  return IsSet() || WaitForSingleObject(m_body->event, milliseconds) == WAIT_OBJECT_0;
}

} // namespace platform
