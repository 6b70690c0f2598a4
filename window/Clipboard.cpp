#include "window/Clipboard.h"

#include "window/Handles.h"

#include <cstring>

// The clipboard then owns the memory. The system makes its last byte zero, whatever that was and however the memory
// gets there, so there is one more than the text has.
void PutOnClipboard(HWND owner, const std::string& text) {
  CGlobalMemory memory(GlobalAlloc(GMEM_MOVEABLE, text.size() + 1));
  if (!memory)
    return;
  std::memcpy(GlobalLock(memory.get()), text.c_str(), text.size() + 1);
  GlobalUnlock(memory.get());
  if (!OpenClipboard(owner))
    return;
  if (EmptyClipboard() && SetClipboardData(CF_TEXT, memory.get()))
    static_cast<void>(memory.release());
  CloseClipboard();
}
