// A function or a block of statements of a script.
//
// A body is parsed once and remembers where its statements begin. Running a statement reads it again from there and
// computes at once; there are no expression trees. The operations are split over files: Parser.cpp (reading),
// Execution.cpp (bodies and statements), Expressions.cpp, Calls.cpp.
#pragma once

#include "script/Activation.h"
#include "script/CONXScriptObject.h"
#include "script/CONXScriptVarTemplate.h"
#include "script/SourceCursor.h"

#include <cstddef>
#include <limits>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

class CONXRunContext;
class CONXScriptIfStatement;
class ScriptProgram;

// Where a name leads, seen from a body.
struct FoundName {
  enum class Kind : std::uint8_t {
    kNothing,
    kVariable,           // declared in a body: `hops` activations out, variable number `slot`
    kParameter,          // value parameter: `hops` out, argument number `slot`
    kFunctionParameter,  // the same for a function parameter
    kFunction,           // declared in the body `hops` out
    kPredefinedVariable, // a variable that is there from the start
    kPredefinedFunction, // a built-in
  };
  Kind kind = Kind::kNothing;
  std::uint32_t hops = 0;
  std::uint32_t slot = 0;
  CONXScriptFunc* function = nullptr;     // kFunction, kPredefinedFunction, kFunctionParameter (its declaration)
  CONXScriptVariable* variable = nullptr; // kPredefinedVariable

  bool IsVariable() const {
    return kind == Kind::kVariable || kind == Kind::kParameter || kind == Kind::kPredefinedVariable;
  }
};

class CONXScriptFunc : public CONXScriptObject {
public:
  // `program` is null for built-ins only. `function` is the function that a block stands in; null for a function.
  explicit CONXScriptFunc(ScriptProgram* program, CONXScriptFunc* function = nullptr)
      : m_program(program), m_function(function ? function : this) {}
  ~CONXScriptFunc() override;

  ObjectKind GetObjectKind() const override { return ObjectKind::kFunction; }

  // --- names

  // Looks through the parameters, the locals and the names from outside; the latest declaration wins.
  FoundName FindName(NameId name) const;
  std::size_t GetParameterCount() const { return m_parameters.size(); }
  // Null if out of range.
  const CONXScriptObject* GetParameter(std::size_t index) const {
    return index < m_parameters.size() ? m_parameters[index].get() : nullptr;
  }

  // --- reading

  ScriptError ParseBody(SourceCursor& cursor, unsigned depth);

  // --- running

  virtual bool CheckArgumentCount(std::size_t count) const { return count == m_parameters.size(); }
  // Runs the function. `symbols` is the activation around it. The arguments are bound to the parameters already.
  virtual ScriptError Execute(CONXRunContext& context, Activation* symbols, ScriptArguments& arguments,
                              CONXScriptVariable* result);
  // Runs the function of this name that this body declares or sees, with this body's variables at zero or empty.
  ScriptError ExecuteFunction(std::string_view name, ScriptArguments& arguments, CONXScriptVariable* result);

protected:
  struct Statement {
    TokenIndex place;
    CONXScriptFunc* block; // of `if` and `while`; owned by the locals
  };
  using Statements = std::vector<Statement>;

  ScriptError ParseBlock(SourceCursor& cursor, unsigned depth, Statements* statements);
  ScriptError ExecuteBody(Activation& activation, const Statements& statements);

private:
  // The names that a body sees from the body around it: what stood there when the inner one was read.
  struct OuterNames {
    const CONXScriptFunc* scope = nullptr;
    std::size_t localCount = 0;
    bool withParameters = false;
  };
  struct Local {
    std::unique_ptr<CONXScriptObject> object;
    std::uint32_t slot;            // of a variable among the body's variables
    std::uint32_t earlierSameName; // index of the declaration that this one hides, or kNone
  };
  static constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

  // Reading.
  void AddParameter(std::unique_ptr<CONXScriptObject> parameter) { m_parameters.push_back(std::move(parameter)); }
  void AddDeclaration(std::unique_ptr<CONXScriptObject> object);
  CONXScriptFunc& AddBlock(std::unique_ptr<CONXScriptFunc> block);
  ScriptError ParseStatement(SourceCursor& cursor, unsigned depth, const Token& first, TokenIndex place,
                             Statements* statements);
  ScriptError ParseDeclaration(SourceCursor& cursor);
  ScriptError ParseFunction(SourceCursor& cursor, unsigned depth);
  ScriptError ParseParameters(SourceCursor& cursor);
  ScriptError ParseParameter(SourceCursor& cursor, const Token& first);
  ScriptError ParseIf(SourceCursor& cursor, unsigned depth, TokenIndex place, Statements* statements);
  ScriptError ParseWhile(SourceCursor& cursor, unsigned depth, TokenIndex place, Statements* statements);
  ScriptError ParseConditionAndBody(SourceCursor& cursor, unsigned depth, CONXScriptFunc& block);
  ScriptError ParseSimpleStatement(SourceCursor& cursor);
  ScriptError ParseExpression(SourceCursor& cursor) const;
  ScriptError ParseOperand(SourceCursor& cursor, const Token& first) const;
  ScriptError ParseArguments(SourceCursor& cursor) const;
  ScriptError ParseArgument(SourceCursor& cursor) const;

  // Names.
  FoundName FindInBody(NameId name, std::size_t localCount, bool withParameters) const;
  FoundName Resolve(const Token& token, TokenIndex place) const;
  static CONXScriptVariable* VariableOf(const FoundName& found, Activation& activation);
  static FunctionValue FunctionOf(const FoundName& found, Activation& activation);

  // Running.
  void MakeVariables(Activation& activation) const;
  ScriptError ExecuteStatement(Activation& activation, const Statement& statement);
  ScriptError ExecuteIf(Activation& activation, CONXScriptIfStatement& block);
  ScriptError ExecuteWhile(Activation& activation, CONXScriptFunc& block);
  ScriptError ExecuteSimpleStatement(Activation& activation, const Token& first);
  ScriptError AssignResult(Activation& activation, Operator op);
  ScriptError EvaluateCondition(Activation& activation, bool* holds);
  ScriptError EvaluateExpression(Activation& activation, CONXScriptVariable* result);
  ScriptError EvaluateOperand(Activation& activation, const Token& first, CONXScriptVariable* result);
  ScriptError EvaluateName(Activation& activation, const Token& name, CONXScriptVariable* result);
  ScriptError EvaluateConversion(Activation& activation, DataType type, CONXScriptVariable* result);
  ScriptError Invoke(FunctionValue callee, ScriptArguments& arguments, CONXScriptVariable* result) const;
  ScriptError CallFunction(Activation& activation, FunctionValue callee, CONXScriptVariable* result);
  ScriptError EvaluateArguments(Activation& activation, const CONXScriptFunc& callee, ScriptArguments* arguments);
  ScriptError EvaluateArgument(Activation& activation, const CONXScriptObject* parameter, ScriptArguments* arguments);
  ScriptError EvaluateReference(Activation& activation, const CONXScriptObject* parameter, ScriptArguments* arguments);
  static bool TakesReference(const CONXScriptObject& parameter, DataType type);
  static ScriptError BindArgument(const CONXScriptObject& parameter, ScriptArgument* argument);

  ScriptProgram* m_program;
  CONXScriptFunc* m_function; // the nearest function: this, or the one that this block stands in
  std::vector<std::unique_ptr<CONXScriptObject>> m_parameters;
  std::vector<Local> m_locals;
  std::unordered_map<NameId, std::uint32_t> m_latestOfName; // index among the locals
  std::uint32_t m_variableCount = 0;
  OuterNames m_outer;
  Statements m_statements;
};

// An `if` with its `else`; both bodies share the declarations made in either.
class CONXScriptIfStatement final : public CONXScriptFunc {
public:
  using CONXScriptFunc::CONXScriptFunc;
  ObjectKind GetObjectKind() const override { return ObjectKind::kIfStatement; }

  ScriptError ParseElseBlock(SourceCursor& cursor, unsigned depth) { return ParseBlock(cursor, depth, &m_else); }
  ScriptError ExecuteElse(Activation& activation) { return ExecuteBody(activation, m_else); }

private:
  Statements m_else;
};

class CONXScriptWhileStatement final : public CONXScriptFunc {
public:
  using CONXScriptFunc::CONXScriptFunc;
  ObjectKind GetObjectKind() const override { return ObjectKind::kWhileStatement; }
};
