// Names that a program declares, and where they are visible.
#pragma once

#include "script/program/Node.h"
#include "script/source/Names.h"
#include "script/value/DataType.h"

#include <deque>
#include <vector>

class CONXScriptFunc;

enum class DeclarationKind : std::uint8_t {
  kVariable,
  kParameter,          // by value
  kFunctionParameter,  // `func name`
  kFunction,           // of the program, or a built-in
  kPredefinedVariable, // there from the start
  kUnknown,            // a name that nothing declares, in a text with problems
};

// What a name leads to.
struct Declaration {
  DeclarationKind kind;
  std::uint8_t type = 0; // DataType of variables and parameters
  NameId name = 0;
  std::uint32_t place = 0;    // of the name in the text
  std::uint32_t body = 0;     // number of the body that declares it; 0: there from the start
  std::uint32_t function = 0; // number of the function whose frame a variable is in, or around a declared function
  std::uint32_t slot = 0;     // of variables and parameters: in that frame. kFunction: number of the function.
                              // kPredefinedVariable: number among those
  DeclarationIndex next = kNoIndex;   // in the same body
  DeclarationIndex hidden = kNoIndex; // while reading: the one of the same name that this one hides

  bool IsVariable() const {
    return kind == DeclarationKind::kVariable || kind == DeclarationKind::kParameter ||
           kind == DeclarationKind::kPredefinedVariable;
  }
  bool IsParameter() const {
    return kind == DeclarationKind::kParameter || kind == DeclarationKind::kFunctionParameter;
  }
  DataType Type() const { return static_cast<DataType>(type); }
};

// A body's statements, and its own declarations in the order of the text.
struct CONXScriptBlock {
  std::uint32_t number = 0; // of the body
  NodeIndex first = 0;
  NodeIndex end = 0;
  DeclarationIndex firstDeclaration = kNoIndex;
  DeclarationIndex lastDeclaration = kNoIndex;
};

// Both bodies share the declarations made in either.
struct CONXScriptIfStatement : CONXScriptBlock {
  NodeIndex elseFirst = 0;
  NodeIndex elseEnd = 0;
};

struct CONXScriptWhileStatement : CONXScriptBlock {
  std::uint32_t brace = 0; // place of the opening one
};
