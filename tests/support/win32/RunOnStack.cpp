#include "tests/support/RunOnStack.h"

#include <doctest/doctest.h>

#include <windows.h>

namespace {

DWORD WINAPI Start(void* function) {
  (*static_cast<std::function<void()>*>(function))();
  return 0;
}

} // namespace

void RunOnStack(std::size_t bytes, std::function<void()> work) {
  const HANDLE thread = CreateThread(nullptr, bytes, Start, &work, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
  REQUIRE(thread);
  WaitForSingleObject(thread, INFINITE);
  CloseHandle(thread);
}
