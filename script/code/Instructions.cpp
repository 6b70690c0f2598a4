#include "script/code/Instructions.h"

const char* NameOf(Op op) {
  static constexpr const char* kNames[] = {
#define SCRIPT_ONE(name, effect) #name,
#define SCRIPT_TWO(name, effect) #name, #name "Constant",
#define SCRIPT_SIX(name, effect)                                                                                       \
#name, #name "Constant", "JumpIf" #name, "JumpIf" #name "Constant", "LoopIf" #name, "LoopIf" #name "Constant",
      SCRIPT_COMPARISONS(SCRIPT_SIX) SCRIPT_ARITHMETIC(SCRIPT_TWO) SCRIPT_DIVISIONS(SCRIPT_TWO)
          SCRIPT_PLAIN_INSTRUCTIONS(SCRIPT_ONE)
#undef SCRIPT_ONE
#undef SCRIPT_TWO
#undef SCRIPT_SIX
  };
  return kNames[static_cast<std::size_t>(op)];
}
