#include "platform/LargeMemory.h"

namespace platform {

// Windows gives large pages only to processes that ask for them with a privilege of their own.
void ExpectFilling(void*, std::size_t) {}

} // namespace platform
