// The engine's time for each script that is named, natively.
#include "bench/EngineTimes.h"
#include "bench/IdleChannel.h"
#include "scriptrt/run/ScriptSession.h"

int main(int argc, char** argv) {
  IdleChannel channel;
  ScriptSession session(&channel);
  session.SetChannel(&channel);
  return PrintEngineTimes(argc - 1, argv + 1, [&](const std::string& text, std::uint64_t* bytes) {
    return session.ExecuteScript(text, nullptr, CountOutput, bytes) == EONX_ERR_NONE;
  });
}
