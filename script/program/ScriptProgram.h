// One script as it has been read: its text, its nodes, its names, its functions. Tools look at it, the compiler makes
// code of it.
#pragma once

#include "script/program/CONXScriptFunc.h"
#include "script/program/Declaration.h"
#include "script/program/Node.h"
#include "script/program/ReadProblem.h"
#include "script/program/RunContext.h"
#include "script/program/Scopes.h"
#include "script/source/Scanner.h"

#include <deque>
#include <string_view>
#include <vector>

class ScriptProgram {
public:
  // The text, followed by a zero byte, and the context must outlive the program.
  ScriptProgram(std::string_view text, RunContext& context);
  ~ScriptProgram();
  ScriptProgram(const ScriptProgram&) = delete;
  ScriptProgram& operator=(const ScriptProgram&) = delete;

  // Adds a name that the whole program sees. Later ones hide earlier ones. Name and object must outlive the program.
  void AddPredefined(std::string_view name, CONXScriptVariable& variable);
  void AddPredefined(std::string_view name, CONXScriptFunc& function);

  // Reads the whole text. Nothing may run if it fails. With somebody who takes problems it succeeds all the same,
  // unless they want no more or memory runs out; nothing may run if there were any. The nodes stand each for itself
  // then: what leads from one to another (the end of a statement or chain) may be missing.
  ScriptError Parse(ProblemSink* problems = nullptr);
  // Where reading the last token began: the place of an error in Parse.
  std::uint32_t Place() const { return place; }

  CONXScriptProgramFunc& Main() { return functions.front(); }
  // What a name leads to in the main program's body when it runs: the latest declaration of all.
  DeclarationIndex FindInMain(std::string_view name);
  std::uint32_t AddCallable(CONXScriptFunc& function);

  RunContext& context;
  NameTable names;
  Scanner scanner;
  Nodes nodes;
  std::deque<Declaration> declarations;
  std::deque<CONXScriptProgramFunc> functions; // the first is the main program
  std::deque<CONXScriptIfStatement> ifStatements;
  std::deque<CONXScriptWhileStatement> whileStatements;
  std::deque<CONXScriptVariable> constants; // texts, and numbers that do not fit into a node
  std::vector<CONXScriptFunc*> callables;   // everything that can be called, by number
  std::vector<CONXScriptVariable*> predefinedVariables;
  Scopes scopes{declarations};
  std::vector<DeclarationIndex> latestOfName; // the compiler's: by name, in the bodies that it is in
  bool hidesFunctions = false;                // a function is declared with the name of a built-in or a type
  std::uint32_t place = 0;
  std::uint32_t bodyCount = 0;
  FunctionExecutor* executor = nullptr; // the machine that runs it
};
