// The engine's time for each script that is named, through the DLL and its `Call`.
#include "bench/EngineTimes.h"
#include "bench/IdleChannel.h"

int main(int argc, char** argv) {
  IdleChannel channel;
  CONXDeviceClient_0* const processor = OndDeviceClientCreateInstance(ONX_OBJ_SCRIPT_PROCESSOR);
  processor->Connect(&channel);
  const int code = PrintEngineTimes(argc - 1, argv + 1, [&](const std::string& text, std::uint64_t* bytes) {
    return processor->Call(ONX_CALL_EXECUTE_SCRIPT, reinterpret_cast<std::uintptr_t>(text.c_str()),
                           reinterpret_cast<std::uintptr_t>(&CountOutput), reinterpret_cast<std::uintptr_t>(bytes),
                           0) == EONX_ERR_NONE;
  });
  OndDeviceClientDeleteInstance(processor);
  return code;
}
