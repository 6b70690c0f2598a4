#include "host/commandline/ExitCodes.h"

namespace host {

const char* ResultText(EONX_ERR_ERRCODE_ result) {
  switch (result) {
  case EONX_ERR_NONE:
    return "";
  case EONX_ERR_EMPTY_PATH:
    return "the path of the script is empty";
  case EONX_ERR_NO_CHANNEL:
    return "no channel is connected";
  case EONX_ERR_FILE_OPEN:
    return "the file cannot be opened";
  case EONX_ERR_FILE_READ:
    return "the file cannot be read";
  case EONX_ERR_DIALOG:
    return "the window cannot be shown";
  case EONX_ERR_OUT_OF_MEMORY:
    return "out of memory";
  case EONX_ERR_ABORTED:
    return "aborted by the user";
  case EONX_ERR_LOCKED:
    return "the channel is locked";
  case EONX_ERR_SCRIPT:
    return "the script failed";
  }
  return "unknown result";
}

} // namespace host
