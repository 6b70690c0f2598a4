// Owners of the system's handles. Each closes its handle once, in the way that its kind asks for; a handle that is only
// borrowed is a plain one.
#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

template <auto kClose>
struct HandleCloser {
  template <typename Handle>
  void operator()(Handle handle) const {
    kClose(handle);
  }
};

template <typename Handle, auto kClose>
using OwnedHandle = std::unique_ptr<std::remove_pointer_t<Handle>, HandleCloser<kClose>>;

using CThreadHandle = OwnedHandle<HANDLE, CloseHandle>;
using CIconHandle = OwnedHandle<HICON, DestroyIcon>;
using CHookHandle = OwnedHandle<HHOOK, UnhookWindowsHookEx>;
using CGlobalMemory = OwnedHandle<HGLOBAL, GlobalFree>;
