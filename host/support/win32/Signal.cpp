#include "host/support/Signal.h"

#include <new>
#include <windows.h>

namespace host {

Signal::Signal() : m_native(reinterpret_cast<std::intptr_t>(CreateEventA(nullptr, TRUE, FALSE, nullptr))) {
  if (m_native == 0)
    throw std::bad_alloc();
}

Signal::~Signal() {
  CloseHandle(reinterpret_cast<HANDLE>(m_native));
}

void Signal::Raise() noexcept {
  SetEvent(reinterpret_cast<HANDLE>(m_native));
}

void Signal::Clear() noexcept {
  ResetEvent(reinterpret_cast<HANDLE>(m_native));
}

} // namespace host
