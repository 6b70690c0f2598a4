// A text of a prompt, read by the one grammar and not run.
#pragma once

#include "scriptrt/builtin/ExternalVariables.h"

#include <cstddef>
#include <string>
#include <vector>

struct PromptFunction {
  std::string name; // as it was spelled
  std::string text; // from `func` to the closing brace
};

struct PromptVariable {
  std::string name;
  DataType type;
};

// The parts of a text, in this order. Only the input is a person's.
struct PromptText {
  std::string before; // functions
  std::string front;
  std::string input;
  std::string back;

  std::size_t InputStart() const { return before.size() + front.size(); }
  std::string Whole() const { return before + front + input + back; }
};

struct PromptReading {
  const char* problem = nullptr; // null: all is right
  std::size_t place = 0;         // of the token that is wrong: its first character
  bool isUnfinished = false;     // something is missing behind the input
  bool isFunctionName = false;   // the input is a function's name, and nothing else
  bool isOneValue = false;       // the text ends with a function that sets its value once, and does nothing else
  // What the input defines, and the rest of it, with the same places.
  std::vector<PromptFunction> functions;
  std::vector<PromptVariable> variables;
  std::string rest;
};

// `variables` are there from outside, and `declared` too.
PromptReading ReadPrompt(const PromptText& text, ExternalVariables& variables,
                         const std::vector<PromptVariable>& declared = {});
