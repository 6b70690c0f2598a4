// What exists while a body runs: its variables, what it was called with, where its surroundings are.
#pragma once

#include "script/CONXScriptVariable.h"

#include <memory>
#include <vector>

class CONXScriptFunc;
struct Activation;

// A function as a value: which one, and the activation whose variables it sees around it. Neither is owned; both
// outlive the call that the value is passed to.
struct FunctionValue {
  CONXScriptFunc* function = nullptr;
  Activation* surroundings = nullptr;
};

// What a call passes: a variable (by value, or a reference to the caller's) or a function.
struct ScriptArgument {
  ScriptArgument() = default;
  explicit ScriptArgument(CONXScriptVariable value) : variable(std::move(value)) {}
  explicit ScriptArgument(FunctionValue value) : function(value) {}
  bool IsVariable() const { return function.function == nullptr; }

  CONXScriptVariable variable;
  FunctionValue function;
};
using ScriptArguments = std::vector<ScriptArgument>;

// One entry into a body. Lives on the stack of the operation that runs the body.
struct Activation {
  Activation* outer;          // of the body around it, as the text nests; null for the main program
  Activation* function;       // of the nearest function: itself, unless the body is a block
  ScriptArguments* arguments; // of a function: bound to its parameters; null for blocks
  CONXScriptVariable* result; // of a function: receives its value; null when nobody wants it
  std::unique_ptr<CONXScriptVariable[]> variables; // declared in the body
};
