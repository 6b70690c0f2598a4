// Base of the built-in functions.
//
// A built-in declares how many arguments it takes and of which types; the base checks all of them before the built-in
// has any effect. Built-ins live for one run and hold no state between calls.
#pragma once

#include "scriptrt/builtin/RunServices.h"

#include "script/program/CONXScriptFunc.h"
#include "script/program/RunContext.h"
#include "util/ScriptPath.h"

#include <initializer_list>
#include <span>
#include <string_view>

// Which argument lists a built-in takes.
struct ArgumentRule {
  // Bit n: a list of n arguments is accepted.
  std::uint32_t counts;
  // One letter an argument: 's' string, 'n' number, 'v' any variable; '*' at the end: any number of anything, functions
  // too.
  std::string_view types;
  // The type of its value; kNone when it has none, or differs from call to call.
  DataType result = DataType::kNone;
};

// "1 to 3 arguments"
constexpr std::uint32_t ArgumentCounts(unsigned least, unsigned most) {
  std::uint32_t counts = 0;
  for (unsigned count = least; count <= most; ++count)
    counts |= 1U << count;
  return counts;
}
constexpr std::uint32_t ArgumentCounts(unsigned count) {
  return ArgumentCounts(count, count);
}

// One call of a built-in, its arguments checked.
struct SysCall {
  RunContext& context;
  ScriptArguments arguments;
  CONXScriptVariable* result; // null when the call's value is not used

  bool Has(std::size_t index) const { return index < arguments.size(); }
  CONXScriptVariable& VariableAt(std::size_t index) const { return arguments[index]; }
  // A zero byte follows. Valid until the variable changes.
  std::string_view TextAt(std::size_t index) const { return VariableAt(index).GetText(); }
  std::uint64_t NumberAt(std::size_t index) const { return VariableAt(index).GetNumber(); }
  std::uint64_t NumberAtOr(std::size_t index, std::uint64_t otherwise) const {
    return Has(index) ? NumberAt(index) : otherwise;
  }

  // A file name, relative to the script's folder.
  std::string PathAt(std::size_t index) const {
    return ResolveScriptPath(context.BaseDirectory(), std::string(TextAt(index)));
  }

  // Give the call its value; without effect when nobody wants it.
  ScriptError SetNumber(std::uint64_t value, DataType type) const {
    return result ? result->SetNumber(value, type) : kScriptOk;
  }
  ScriptError SetText(std::string_view bytes) const { return result ? result->SetText(bytes) : kScriptOk; }
};

class CONXScriptSysFunc : public CONXScriptFunc {
public:
  // The services must outlive the built-in.
  explicit CONXScriptSysFunc(const RunServices& services) : m_services(services) {}

  bool CheckArgumentCount(std::size_t count) const final;
  DataType GetResultType() const final { return m_rule.result; }
  ScriptError Execute(RunContext& context, ScriptArguments arguments, CONXScriptVariable* result) final;

  // Set once, when the built-in is registered.
  void SetRule(const ArgumentRule& rule) { m_rule = rule; }
  const ArgumentRule& Rule() const { return m_rule; }

protected:
  bool TakesTypes(std::span<const DataType> types) const;
  // The built-in's own work.
  virtual ScriptError Perform(const SysCall& call) = 0;

  const RunServices& Services() const { return m_services; }
  void Write(const char* text) const { m_services.output.Write(text); }

private:
  const RunServices& m_services;
  ArgumentRule m_rule{0, "*"};
};

// A built-in whose only effect is its value: nothing is done when nobody wants that.
class CONXValueFunc : public CONXScriptSysFunc {
public:
  using CONXScriptSysFunc::CONXScriptSysFunc;

protected:
  ScriptError Perform(const SysCall& call) final { return call.result ? Compute(call) : kScriptOk; }
  virtual ScriptError Compute(const SysCall& call) = 0;
};

// A built-in whose value depends on its arguments alone: one function computes it, also for calls that need no checks.
class CONXPureFunc : public CONXValueFunc {
public:
  using CONXValueFunc::CONXValueFunc;

  bool IsPure() const final { return true; }
  PureFunction GetPureFunction(std::span<const DataType> types) const final {
    return TakesTypes(types) ? FunctionFor(types) : nullptr;
  }

protected:
  ScriptError Compute(const SysCall& call) final;
  // The types are those that the rule wants, three at most.
  virtual PureFunction FunctionFor(std::span<const DataType> types) const = 0;
};
