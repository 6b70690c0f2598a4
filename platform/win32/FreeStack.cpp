#include "platform/Platform.h"
#include "platform/StackReserve.h"

#include <windows.h>

namespace platform {

namespace {

using StackLimitsFunction = void(WINAPI*)(PULONG_PTR low, PULONG_PTR high);

struct Limits {
  ULONG_PTR low = 0;
  ULONG_PTR high = 0;
};

// Only a few loads from the thread's own block, so nothing is remembered; that also stays right when a host runs on
// fibers. Windows 7 does not have it.
StackLimitsFunction FindStackLimits() {
  const auto function = GetProcAddress(GetModuleHandleA("kernel32.dll"), "GetCurrentThreadStackLimits");
  return reinterpret_cast<StackLimitsFunction>(reinterpret_cast<void*>(function));
}

// The reservation that holds this frame. Its used part reaches from somewhere below the frame up to the high end.
Limits QueryStackLimits(const void* frame) {
  MEMORY_BASIC_INFORMATION used{};
  VirtualQuery(frame, &used, sizeof used);
  return {reinterpret_cast<ULONG_PTR>(used.AllocationBase),
          reinterpret_cast<ULONG_PTR>(used.BaseAddress) + used.RegionSize};
}

// The system's guard pages at the low end: a thread that touches the last of them is ended.
constexpr ULONG_PTR kGuard = 3 * 4096;

} // namespace

std::size_t FreeStack() {
  static const StackLimitsFunction stackLimits = FindStackLimits();
  const void* frame = __builtin_frame_address(0);
  Limits limits;
  if (stackLimits) {
    stackLimits(&limits.low, &limits.high);
  } else {
    limits = QueryStackLimits(frame);
  }
  return FreeAboveReserve(limits.low + kGuard, limits.high, reinterpret_cast<std::uintptr_t>(frame));
}

} // namespace platform
