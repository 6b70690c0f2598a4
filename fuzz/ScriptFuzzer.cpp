// Reads and runs arbitrary scripts. Loops end at their first round, because a stop is asked for beforehand; there are
// no built-ins, so that no script reaches a file.

#include "script/RunScript.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  RunContext context;
  context.StopEvent().Set();
  CONXScriptVariable external(DataType::kString);
  CONXScriptVariable result;
  const ScriptOutput output{[](void*, const char*) {}, nullptr};
  const ScriptError error = RunScript({context, text, "Z:", output, {}, {{"external", &external}}, nullptr, &result});
  static_cast<void>(error);
  return 0;
}
