// Base of the built-in functions.
//
// A built-in declares how many arguments it takes and of which types; the base checks all of them before the built-in
// has any effect. Built-ins live for one run and hold no state between calls.
#pragma once

#include "scriptrt/builtin/RunServices.h"

#include "script/CONXScriptFunc.h"
#include "script/RunContext.h"
#include "util/ScriptPath.h"

#include <initializer_list>
#include <string_view>

// Which argument lists a built-in takes.
struct ArgumentRule {
  // Bit n: a list of n arguments is accepted.
  std::uint32_t counts;
  // One letter an argument: 's' string, 'n' number, 'v' any variable; '*' at the end: any number of anything, functions
  // too.
  std::string_view types;
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
  CONXRunContext& context;
  Activation* symbols;
  ScriptArguments& arguments;
  CONXScriptVariable* result; // null when the call's value is not used

  bool Has(std::size_t index) const { return index < arguments.size(); }
  CONXScriptVariable& VariableAt(std::size_t index) const { return arguments[index].variable; }
  const SharedText& TextAt(std::size_t index) const { return VariableAt(index).GetSharedText(); }
  std::uint64_t NumberAt(std::size_t index) const { return VariableAt(index).GetNumber(); }
  std::uint64_t NumberAtOr(std::size_t index, std::uint64_t otherwise) const {
    return Has(index) ? NumberAt(index) : otherwise;
  }

  // A file name, relative to the script's folder.
  std::string PathAt(std::size_t index) const {
    return ResolveScriptPath(context.BaseDirectory(), TextAt(index).Bytes());
  }

  // Give the call its value; without effect when nobody wants it.
  ScriptError SetNumber(std::uint64_t value, DataType type) const {
    return result ? result->SetNumber(value, type) : kScriptOk;
  }
  ScriptError SetText(std::string bytes) const { return result ? result->SetText(std::move(bytes)) : kScriptOk; }
};

class CONXScriptSysFunc : public CONXScriptFunc {
public:
  // The services must outlive the built-in.
  explicit CONXScriptSysFunc(const RunServices& services) : CONXScriptFunc(nullptr), m_services(services) {}

  bool CheckArgumentCount(std::size_t count) const final;
  ScriptError Execute(CONXRunContext& context, Activation* symbols, ScriptArguments& arguments,
                      CONXScriptVariable* result) final;

  // Set once, when the built-in is registered.
  void SetRule(const ArgumentRule& rule) { m_rule = rule; }

protected:
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
