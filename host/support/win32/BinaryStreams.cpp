#include "host/support/BinaryStreams.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>

namespace host {

void UseBinaryStreams() {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
}

} // namespace host
