// A function that scripts can call: one of the program, a built-in, or one that another run passed in.
#pragma once

#include "script/program/Declaration.h"
#include "script/value/CONXScriptVariable.h"
#include "script/value/ScriptError.h"

#include <cstddef>
#include <span>
#include <vector>

class RunContext;
class ScriptMachine;
class ScriptProgram;
struct Code;

// What a call passes: slots that are variables (by value, or references to the caller's) or functions.
class ScriptArguments {
public:
  ScriptArguments() = default;
  // `machine` is the one whose functions are among them.
  ScriptArguments(CONXScriptVariable* first, std::size_t count, ScriptMachine* machine)
      : m_first(first), m_count(count), m_machine(machine) {}
  std::size_t size() const { return m_count; }
  CONXScriptVariable& operator[](std::size_t index) const { return m_first[index]; }
  CONXScriptVariable* begin() const { return m_first; }
  CONXScriptVariable* end() const { return m_first + m_count; }
  ScriptArguments From(std::size_t index) const { return {m_first + index, m_count - index, m_machine}; }
  ScriptMachine* Machine() const { return m_machine; }

private:
  CONXScriptVariable* m_first = nullptr;
  std::size_t m_count = 0;
  ScriptMachine* m_machine = nullptr;
};

// What a parameter takes. A function without declared parameters, as built-ins are, takes any variable or function.
struct ScriptParameter {
  bool isFunction;
  DataType type; // of a variable

  bool TakesReferenceTo(DataType variable) const { return !isFunction && type == variable; }
};

// The value of a function as a function of its arguments, for callers that know their types: a built-in without
// effects. Reads the fields of up to three arguments, whose tags may be missing if they are numbers. Leaves a number's
// bits, or a tagged text, in `result`, which holds no text before and is none of the arguments.
using PureFunction = ScriptError (*)(CONXScriptVariable& result, const CONXScriptVariable& first,
                                     const CONXScriptVariable& second, const CONXScriptVariable& third);

class CONXScriptFunc {
public:
  enum class Origin : std::uint8_t { kOutside, kProgram };
  explicit CONXScriptFunc(Origin origin = Origin::kOutside) : m_origin(origin) {}
  virtual ~CONXScriptFunc() = default;
  CONXScriptFunc(const CONXScriptFunc&) = delete;
  CONXScriptFunc& operator=(const CONXScriptFunc&) = delete;

  std::size_t GetParameterCount() const { return m_parameters.size(); }
  // `index` is below the count.
  ScriptParameter GetParameter(std::size_t index) const { return m_parameters[index]; }
  void AddParameter(const ScriptParameter& parameter) { m_parameters.push_back(parameter); }
  virtual bool CheckArgumentCount(std::size_t count) const { return count == GetParameterCount(); }
  // Whether its only effect is its value, which depends on the arguments alone.
  virtual bool IsPure() const { return false; }
  // What computes a pure function's value for arguments of these types; null when it does not take them.
  virtual PureFunction GetPureFunction(std::span<const DataType> /*types*/) const { return nullptr; }
  // The type of the value that a successful call leaves; kNone when that differs from call to call.
  virtual DataType GetResultType() const { return DataType::kNone; }
  // Runs the function. `result` is untyped before, and null when nobody wants the value.
  virtual ScriptError Execute(RunContext& context, ScriptArguments arguments, CONXScriptVariable* result) = 0;

  // Whether this is a CONXScriptProgramFunc.
  bool IsOfProgram() const { return m_origin == Origin::kProgram; }

private:
  const Origin m_origin;
  std::vector<ScriptParameter> m_parameters;
};

// A function of the program. Its frame holds the result, the frame around it, the parameters, the variables of all its
// blocks, and what the code needs in between.
class CONXScriptProgramFunc;

// Who runs the functions of a program.
class FunctionExecutor {
public:
  // Runs a function with arguments that are bound already, above whatever runs. `outer` is the frame around it; null:
  // the main program's.
  virtual ScriptError ExecuteFunction(CONXScriptProgramFunc& function, CONXScriptVariable* outer,
                                      ScriptArguments arguments, CONXScriptVariable* result) = 0;

protected:
  ~FunctionExecutor() = default;
};

class CONXScriptProgramFunc final : public CONXScriptFunc {
public:
  static constexpr std::uint32_t kFirstParameter = 2; // the result and the frame around stand in front

  explicit CONXScriptProgramFunc(ScriptProgram& program);

  // Only through the machine that runs the program.
  ScriptError Execute(RunContext& context, ScriptArguments arguments, CONXScriptVariable* result) override;

  ScriptProgram& program;
  NameId name = 0;
  std::uint32_t number = 0;                  // in the program
  std::uint32_t outer = 0;                   // number of the function around it
  std::uint32_t level = 0;                   // how many functions are around it
  std::uint32_t slotCount = kFirstParameter; // result, frame around, parameters, variables
  bool hasTexts = false;                     // among its variables
  CONXScriptBlock body;
  // The machine's, when it has been called: for arguments by value only, and for calls with references among them.
  const Code* code[2] = {};
};
