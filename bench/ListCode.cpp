// Prints the code that the engine makes of script files: bench_listing FILE…
#include "script/code/Listing.h"
#include "scriptrt/builtin/BuiltIns.h"

#include <cstdio>
#include <fstream>
#include <iterator>

int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    std::ifstream file(argv[i], std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(file)), {});
    RunContext context;
    ScriptProgram program(text, context);
    const BuiltIns builtIns({});
    for (const auto& [name, function] : builtIns.ByName())
      program.AddPredefined(name, *function);
    if (const ScriptError error = program.Parse()) {
      std::fprintf(stderr, "%s: %s at offset %u\n", argv[i], ErrorText(error), program.Place());
      return 1;
    }
    std::fputs(ListCode(program).c_str(), stdout);
  }
  return 0;
}
