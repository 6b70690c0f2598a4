#include "host/support/BinaryStreams.h"

namespace host {

void UseBinaryStreams() {} // they are

} // namespace host
