#include "scriptrt/check/FailureExplainer.h"

#include "script/RunScript.h"
#include "script/machine/ScriptMachine.h"
#include "scriptrt/builtin/CONXScriptSysFunc.h"
#include "scriptrt/check/ChainReading.h"
#include "scriptrt/check/NearNames.h"
#include "scriptrt/check/TextPlaces.h"

#include <algorithm>

namespace {

std::string_view NameOf(DataType type) {
  switch (type) {
  case DataType::kUint32:
    return "a dword";
  case DataType::kInt32:
    return "an int32";
  case DataType::kUint64:
    return "a uint64";
  case DataType::kInt64:
    return "an int64";
  case DataType::kString:
    return "a string";
  default:
    return "nothing";
  }
}

std::string Number(std::size_t count, std::string_view noun) {
  return (count == 0 ? "no" : std::to_string(count)) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

constexpr std::string_view kUnset = "a function whose value was never set has none: assign to its name at its start";
constexpr std::string_view kToText = "a number becomes a string by `numtostr(n)`";
constexpr std::string_view kToNumber = "a string becomes a number by `strtoint32(s)` or one of its relatives";

// "2 or 3 arguments"
std::string CountsOf(const CONXScriptSysFunc& function) {
  constexpr std::size_t kMost = 32; // no built-in has as many of its own
  std::vector<std::size_t> counts;
  for (std::size_t count = 0; count < kMost; ++count)
    if (function.CheckArgumentCount(count))
      counts.push_back(count);
  if (counts.back() == kMost - 1)
    return "at least " + Number(counts.front(), "argument");
  std::string text;
  for (std::size_t i = 0; i + 1 < counts.size(); ++i)
    text += std::to_string(counts[i]) + (i + 2 < counts.size() ? ", " : " or ");
  return text + Number(counts.back(), "argument");
}

bool IsDivision(Op op) {
  return op >= Op::kDivide && op <= Op::kRemainderSignedConstant;
}

class Explainer {
public:
  explicit Explainer(const FailedRun& run) : m_run(run), m_program(run.program), m_reading(run.program) {}

  FailureExplanation Explain();

private:
  // What a problem is about, and what leads to its fix.
  struct Finding {
    std::string message;
    std::string hint;
    std::optional<TextRange> mark;
    std::optional<std::uint32_t> position; // in the mark; otherwise where it begins
  };

  Finding Find() const;
  Finding FindStart() const;
  Finding FindDivision(NodeIndex chain) const;
  Finding FindTypeError() const;
  std::optional<Finding> FindCallProblem() const;
  std::optional<Finding> FindArgumentProblem() const;
  std::optional<Finding> FindReceiver(NodeIndex chain) const;
  Finding DescribeMisfit(const OperatorMisfit& misfit, NodeIndex chain) const;
  Finding DescribeCount(NodeIndex call) const;
  Finding DescribeBuiltIn(NodeIndex call, const CONXScriptSysFunc& function) const;
  Finding DescribeRequest(NodeIndex call) const;
  std::string SpellingOf(NodeIndex named) const;
  const CONXScriptFunc* CalleeOf(NodeIndex call) const;
  std::string TypesOf(const CONXScriptFunc& function) const;
  const Instruction* Failed() const;
  std::string FunctionOf(const Code* code) const;
  CallPlace PlaceOf(const ScriptMachine::Activation& call) const;

  const FailedRun& m_run;
  ScriptProgram& m_program;
  const ChainReading m_reading;
  std::vector<ScriptMachine::Activation> m_calls;
};

const Instruction* Explainer::Failed() const {
  return m_calls.empty() ? nullptr : &m_calls.front().code->instructions[m_calls.front().instruction];
}

FailureExplanation Explainer::Explain() {
  constexpr std::size_t kMostCalls = 6; // at both ends
  FailureExplanation explanation;
  if (m_run.machine)
    m_calls = m_run.machine->FailedCalls(kMostCalls, &explanation.callCount);
  for (const ScriptMachine::Activation& call : m_calls)
    explanation.calls.push_back(PlaceOf(call));
  const Finding finding = Find();
  const Token token = m_program.scanner.Scan(m_run.place);
  const TextRange otherwise{token.begin, std::max(token.end, token.begin)};
  ScriptProblem& problem = explanation.problem;
  problem.message = ErrorText(m_run.error) + (finding.message.empty() ? "" : ": " + finding.message);
  problem.hint = finding.hint;
  problem.mark = finding.mark.value_or(otherwise);
  problem.range = {finding.position.value_or(problem.mark.begin), problem.mark.end};
  return explanation;
}

Explainer::Finding Explainer::Find() const {
  if (m_run.machine && m_calls.empty())
    return FindStart();
  const NodeIndex chain = m_reading.ChainEndingAt(m_run.place);
  const NodeIndex call = m_reading.CallEndingAt(m_run.place);
  switch (m_run.error) {
  case kDivisionByZero:
    if (chain != kNoIndex)
      return FindDivision(chain);
    break;
  case kWrongParameterCount:
    if (call != kNoIndex)
      return DescribeCount(call);
    break;
  case kTypeError:
  case kSyntaxError:
    return FindTypeError();
  case kSystemFunctionFailed:
    if (call != kNoIndex)
      return DescribeRequest(call);
    break;
  case kOutOfMemory:
    if (m_calls.size() > 2)
      return {"a function calls itself without end, or a text grows without end", "", {}, {}};
    break;
  default:
    break;
  }
  return {};
}

// The function that another script asked for could not be started.
Explainer::Finding Explainer::FindStart() const {
  const FunctionStart* const start = m_run.setup.function;
  if (!start)
    return {};
  const std::string name = Quoted(start->name);
  const DeclarationIndex found = m_program.FindInMain(start->name);
  if (found == kNoIndex) {
    std::vector<std::string_view> names;
    for (const CONXScriptProgramFunc& function : m_program.functions)
      if (function.level == 1)
        names.push_back(m_program.names.SpellingOf(function.name));
    const std::string_view near = NearestName(start->name, names);
    return {
        "the script has no function " + name, near.empty() ? "" : "did you mean `" + std::string(near) + "`?", {}, {}};
  }
  const Declaration& declared = m_program.declarations[found];
  if (declared.IsVariable())
    return {name + " is a variable, no function", "", {}, {}};
  const CONXScriptFunc& function = *m_program.callables[declared.slot];
  const Token token = m_program.scanner.Scan(declared.place);
  const TextRange mark{token.begin, token.end};
  if (m_run.error == kWrongParameterCount)
    return {name + " takes " + Number(function.GetParameterCount(), "argument") + TypesOf(function) + ", " +
                Number(start->arguments.size(), "argument") + (start->arguments.size() == 1 ? " is" : " are") +
                " given",
            "",
            mark,
            {}};
  return {"an argument of " + name + " is of another kind" + TypesOf(function), "", mark, {}};
}

// --- operators

Explainer::Finding Explainer::FindDivision(NodeIndex chain) const {
  const auto isDivision = [](const Node& node) {
    const auto op = static_cast<Operator>(node.op);
    return op == Operator::kDivide || op == Operator::kRemainder;
  };
  const std::vector<ChainPart> parts = m_reading.PartsOf(chain);
  std::vector<std::size_t> divisions; // in the order in which they are computed
  for (std::size_t i = parts.size(); i-- > 0;)
    if (m_program.nodes[parts[i].node].kind == NodeKind::kBinary && isDivision(m_program.nodes[parts[i].node]))
      divisions.push_back(i);
  std::size_t before = 0; // divisions of the chain that were computed in front of the one that failed
  std::size_t all = 0;
  for (std::size_t i = 0; Failed() && i < m_calls.front().code->instructions.size(); ++i) {
    const Code& code = *m_calls.front().code;
    if (code.places[i] != m_run.place || !IsDivision(code.instructions[i].op))
      continue;
    before += i < m_calls.front().instruction ? 1 : 0;
    ++all;
  }
  const auto op = [&](TextRange range) { return Quoted(m_reading.TextOf(range)); };
  if (divisions.empty()) { // `/=` or `%=`
    const TextRange value = m_reading.RangeOf(chain);
    return {"the value " + op(value) + " is 0", "", value, {}};
  }
  const bool isCertain = divisions.size() == 1 || (all == divisions.size() && before < all);
  const std::size_t division = isCertain ? divisions[divisions.size() == 1 ? 0 : before] : divisions.back();
  const NodeIndex node = parts[division].node;
  const TextRange sign = m_reading.RangeOfToken(node);
  const TextRange right = m_reading.RangeFrom(node + 1, chain);
  const bool isLong = division + 2 < parts.size();
  const std::string hint = isLong ? "an expression is taken from right to left: " + op(right) +
                                        " is all on the right side; parentheses group it otherwise"
                                  : "";
  if (!isCertain)
    return {"one of the right sides is 0", hint, m_reading.RangeOf(chain), sign.begin};
  return {"the right side of " + op(sign) + " is 0: " + op(right), hint, TextRange{sign.begin, right.end}, sign.begin};
}

Explainer::Finding Explainer::DescribeMisfit(const OperatorMisfit& misfit, NodeIndex chain) const {
  const Node& op = m_program.nodes[misfit.op];
  const TextRange sign = m_reading.RangeOfToken(misfit.op);
  const TextRange right = m_reading.RangeFrom(misfit.op + 1, chain);
  const std::string name = Quoted(m_reading.TextOf(sign));
  Finding finding{"", "", TextRange{sign.begin, right.end}, sign.begin};
  const auto side = [](DataType type) {
    return IsNumeric(type) ? "a number" : type == DataType::kString ? "a string" : "nothing";
  };
  if (op.kind == NodeKind::kUnary) {
    finding.message = name + " does not take " + side(misfit.right) + ": " + Quoted(m_reading.TextOf(right));
    finding.hint = misfit.right == DataType::kString ? kToNumber : kUnset;
  } else if (misfit.left == DataType::kString && misfit.right == DataType::kString) {
    finding.message = name + " does not take strings";
    finding.hint = "strings know `+`, `==` and `!=`";
  } else {
    finding.message = name + " does not take " + side(misfit.left) + " on the left and " + side(misfit.right) +
                      " on the right: " + Quoted(m_reading.TextOf(right));
    const bool isUnset = misfit.left == DataType::kNone || misfit.right == DataType::kNone;
    finding.hint = isUnset ? kUnset : static_cast<Operator>(op.op) == Operator::kAdd ? kToText : kToNumber;
  }
  return finding;
}

// --- types

Explainer::Finding Explainer::FindTypeError() const {
  if (const auto finding = FindArgumentProblem())
    return *finding;
  const NodeIndex chain = m_reading.ChainEndingAt(m_run.place);
  if (chain != kNoIndex) {
    std::optional<OperatorMisfit> misfit;
    m_reading.TypeOf(chain, &misfit);
    if (misfit)
      return DescribeMisfit(*misfit, chain);
    for (const ChainPart& part : m_reading.PartsOf(chain))
      if (m_program.nodes[part.node].kind == NodeKind::kMalformed)
        return {"this is no number that the language knows", "", m_reading.RangeOfToken(part.node), {}};
  }
  if (const auto finding = FindCallProblem())
    return *finding;
  if (chain == kNoIndex)
    return {};
  const Instruction* const failed = Failed();
  if (failed && (failed->op == Op::kBinaryGeneral || failed->op == Op::kUnaryGeneral)) {
    const CONXScriptVariable* const frame = m_calls.front().frame;
    const std::vector<ChainPart> parts = m_reading.PartsOf(chain);
    const bool isUnary = failed->op == Op::kUnaryGeneral;
    for (std::size_t i = parts.size(); i-- > 0;) {
      const Node& node = m_program.nodes[parts[i].node];
      if (node.kind == (isUnary ? NodeKind::kUnary : NodeKind::kBinary) && node.op == (failed->n & 0xFFU))
        return DescribeMisfit({parts[i].node, isUnary ? DataType::kNone : frame[failed->b].GetType(),
                               isUnary ? frame[failed->b].GetType() : frame[failed->c].GetType()},
                              chain);
    }
  }
  return FindReceiver(chain).value_or(Finding{});
}

// Who gets the chain's value does not take it.
std::optional<Explainer::Finding> Explainer::FindReceiver(NodeIndex chain) const {
  const Node& receiver = m_program.nodes[chain - 1];
  const TextRange range = m_reading.RangeOf(chain);
  const std::string value = Quoted(m_reading.TextOf(range));
  const Instruction* const failed = Failed();
  DataType type = m_reading.TypeOf(chain);
  const bool isTagged = failed && (failed->op == Op::kAssignDynamic || failed->op == Op::kAssignGeneral ||
                                   failed->op == Op::kConvertGeneral || failed->op == Op::kJumpUnlessDynamic);
  if (type == DataType::kNone && isTagged)
    type = m_calls.front().frame[failed->b].GetType();
  const std::string what = value + (type == DataType::kNone ? " has no value" : " is " + std::string(NameOf(type)));
  const auto hint = [&](DataType wanted) {
    return std::string(type == DataType::kNone ? kUnset : wanted == DataType::kString ? kToText : kToNumber);
  };
  switch (receiver.kind) {
  case NodeKind::kAssign: {
    const Declaration& target = m_program.declarations[receiver.value];
    return Finding{"`" + SpellingOf(chain - 1) + "` is " + std::string(NameOf(target.Type())) + ", " + what,
                   hint(target.Type()),
                   range,
                   {}};
  }
  case NodeKind::kIf:
  case NodeKind::kWhile:
    return Finding{"a condition is a number, " + what,
                   type == DataType::kString ? "compare it: `s != \"\"`" : hint(DataType::kInt32),
                   range,
                   {}};
  case NodeKind::kConvert:
    return Finding{what + ", which a type name does not convert", hint(static_cast<DataType>(receiver.op)), range, {}};
  case NodeKind::kValueArgument: {
    std::size_t index = 0;
    const NodeIndex call = m_reading.CallWithArgumentAt(receiver.place, &index);
    const CONXScriptFunc* const callee = call == kNoIndex ? nullptr : CalleeOf(call);
    if (!callee || index >= callee->GetParameterCount())
      return std::nullopt;
    const DataType wanted = callee->GetParameter(index).type;
    return Finding{"argument " + std::to_string(index + 1) + " of `" + SpellingOf(call) + "` is " +
                       std::string(NameOf(wanted)) + ", " + what,
                   hint(wanted),
                   range,
                   {}};
  }
  default:
    return std::nullopt;
  }
}

// --- calls

std::string Explainer::SpellingOf(NodeIndex named) const {
  return std::string(m_program.names.SpellingOf(m_program.declarations[m_program.nodes[named].value].name));
}

// Null where only the run knew.
const CONXScriptFunc* Explainer::CalleeOf(NodeIndex call) const {
  const Declaration& declared = m_program.declarations[m_program.nodes[call].value];
  if (declared.kind == DeclarationKind::kFunction)
    return m_program.callables[declared.slot];
  const Instruction* const failed = Failed();
  if (!failed)
    return nullptr;
  const std::uint32_t slot = failed->op == Op::kCallDynamic ? failed->a : failed->b;
  const bool isKnown =
      failed->op == Op::kCallDynamic || failed->op == Op::kCheckValue || failed->op == Op::kCheckReference;
  return isKnown && m_calls.front().frame[slot].type == DataType::kFunction
             ? m_program.callables[m_calls.front().frame[slot].function]
             : nullptr;
}

// " (int32, func)"; nothing when there are none.
std::string Explainer::TypesOf(const CONXScriptFunc& function) const {
  std::string types;
  for (std::size_t i = 0; i < function.GetParameterCount(); ++i) {
    const ScriptParameter parameter = function.GetParameter(i);
    const std::string_view name = parameter.isFunction ? "a function" : NameOf(parameter.type);
    types += (i == 0 ? " (" : ", ") + std::string(name.substr(name.find(' ') + 1));
  }
  return types.empty() ? "" : types + ")";
}

Explainer::Finding Explainer::DescribeCount(NodeIndex call) const {
  const std::size_t given = m_reading.ArgumentsOf(call).size();
  const TextRange mark = m_reading.RangeOfToken(call);
  const CONXScriptFunc* const callee = CalleeOf(call);
  std::string wanted = "another number of arguments";
  if (const auto* builtIn = dynamic_cast<const CONXScriptSysFunc*>(callee)) {
    wanted = CountsOf(*builtIn);
  } else if (callee) {
    wanted = Number(callee->GetParameterCount(), "argument") + TypesOf(*callee);
  }
  return {"`" + SpellingOf(call) + "` takes " + wanted + ", " + Number(given, "argument") +
              (given == 1 ? " is" : " are") + " given",
          "",
          mark,
          {}};
}

// The call that ends at the place is one of a built-in that does not take its arguments.
std::optional<Explainer::Finding> Explainer::FindCallProblem() const {
  const Instruction* const failed = Failed();
  if (failed && failed->op != Op::kCallBuiltIn && failed->op != Op::kCallPure && failed->op != Op::kCallDynamic)
    return std::nullopt;
  const NodeIndex call = m_reading.CallEndingAt(m_run.place);
  const auto* const callee = call == kNoIndex ? nullptr : dynamic_cast<const CONXScriptSysFunc*>(CalleeOf(call));
  if (!callee)
    return std::nullopt;
  return DescribeBuiltIn(call, *callee);
}

Explainer::Finding Explainer::DescribeBuiltIn(NodeIndex call, const CONXScriptSysFunc& function) const {
  const std::vector<NodeIndex> arguments = m_reading.ArgumentsOf(call);
  const std::string_view types = function.Rule().types;
  const std::string name = "`" + SpellingOf(call) + "`";
  std::optional<std::size_t> unknown;
  for (std::size_t i = 0; i < arguments.size() && i < types.size() && types[i] != '*'; ++i) {
    const Node& argument = m_program.nodes[arguments[i]];
    const bool isReference = argument.kind == NodeKind::kReference;
    const TextRange range = isReference ? m_reading.RangeOfToken(arguments[i]) : m_reading.RangeOf(arguments[i] + 1);
    const bool isFunction = isReference && !m_program.declarations[argument.value].IsVariable();
    const DataType type = isFunction    ? DataType::kFunction
                          : isReference ? m_program.declarations[argument.value].Type()
                                        : m_reading.TypeOf(arguments[i] + 1);
    const bool fits = types[i] == 's' ? type == DataType::kString : types[i] == 'n' ? IsNumeric(type) : !isFunction;
    if (type == DataType::kNone) {
      unknown = unknown ? unknown : i;
      continue;
    }
    if (fits)
      continue;
    const bool wantsText = types[i] == 's';
    return {"argument " + std::to_string(i + 1) + " of " + name + " is " +
                (isFunction ? "a function" : std::string(NameOf(type))) + ", not a " +
                (wantsText         ? "string"
                 : types[i] == 'n' ? "number"
                                   : "variable") +
                ": " + Quoted(m_reading.TextOf(range)),
            isFunction ? "" : std::string(wantsText ? kToText : kToNumber),
            range,
            {}};
  }
  if (unknown) {
    const TextRange range = m_reading.RangeOf(arguments[*unknown] + 1);
    return {"argument " + std::to_string(*unknown + 1) + " of " + name + " is not a " +
                (types[*unknown] == 's' ? "string: " : "number: ") + Quoted(m_reading.TextOf(range)),
            std::string(kUnset),
            range,
            {}};
  }
  if (arguments.size() != 1) // the only reason left is a text without a number
    return {name + " does not take these arguments", "", m_reading.RangeOfToken(call), {}};
  const TextRange range = m_reading.RangeOf(arguments[0] + 1);
  std::string text = Quoted(m_reading.TextOf(range));
  if (const Instruction* const failed = Failed(); failed && failed->op == Op::kCallPure)
    text += " is " + Quoted(ViewOf(m_calls.front().frame[failed->b].text)) + ", which";
  return {name + ": " + text + " does not begin with a number",
          "look at the text first, by `strlen(s)` or `instr(s, ...)`, if it may have none",
          range,
          {}};
}

// An argument of another kind than the parameter: a value for a function, say.
std::optional<Explainer::Finding> Explainer::FindArgumentProblem() const {
  std::size_t index = 0;
  const NodeIndex call = m_reading.CallWithArgumentAt(m_run.place, &index);
  const CONXScriptFunc* const callee = call == kNoIndex ? nullptr : CalleeOf(call);
  const Instruction* const failed = Failed();
  const bool isAtArgument =
      !failed || failed->op == Op::kFail || failed->op == Op::kCheckValue || failed->op == Op::kCheckReference;
  if (!callee || !isAtArgument || index >= callee->GetParameterCount())
    return std::nullopt;
  const ScriptParameter parameter = callee->GetParameter(index);
  const Node& argument = m_program.nodes[m_reading.ArgumentsOf(call)[index]];
  const std::string which = "argument " + std::to_string(index + 1) + " of `" + SpellingOf(call) + "` is ";
  if (argument.kind != NodeKind::kReference) {
    if (!parameter.isFunction)
      return std::nullopt;
    return Finding{which + "a function, this is a value",
                   "pass a function as `&NAME`",
                   m_reading.RangeOf(m_reading.ArgumentsOf(call)[index] + 1),
                   {}};
  }
  const Declaration& named = m_program.declarations[argument.value];
  const std::string what = named.IsVariable() ? std::string(NameOf(named.Type())) : "a function";
  const std::string name(m_program.names.SpellingOf(named.name));
  return Finding{which + (parameter.isFunction ? "a function" : std::string(NameOf(parameter.type))) + ", `&" + name +
                     "` is " + what,
                 named.IsVariable() && !parameter.isFunction ? "without `&` the value is passed, converted to the type"
                                                             : "",
                 m_reading.RangeOfToken(m_reading.ArgumentsOf(call)[index]),
                 {}};
}

// What a built-in asked of files, the device or the user was refused.
Explainer::Finding Explainer::DescribeRequest(NodeIndex call) const {
  const std::string name = SpellingOf(call);
  std::string hint;
  if (name.starts_with("execute") && name != "executejobfile")
    hint = "the script must be there and readable; names are relative to the folder of this script";
  else if (name.starts_with("transmit") || name == "executejobfile")
    hint = "the line above it in the output has the reason; the last argument 1 lets the script go on";
  else if (name.starts_with("userinput"))
    hint = "the least value must not be above the greatest";
  return {"`" + name + "`", hint, m_reading.RangeOfToken(call), {}};
}

// --- the calls that led there

std::string Explainer::FunctionOf(const Code* code) const {
  for (const CONXScriptProgramFunc& function : m_program.functions)
    if (function.code[0] == code || function.code[1] == code)
      return function.level == 0 ? "" : std::string(m_program.names.SpellingOf(function.name));
  return "";
}

CallPlace Explainer::PlaceOf(const ScriptMachine::Activation& activation) const {
  const std::uint32_t place = activation.code->places[activation.instruction];
  const NodeIndex call = m_reading.CallEndingAt(place);
  return {FunctionOf(activation.code),
          call == kNoIndex ? m_program.scanner.Scan(place).begin : m_reading.RangeOfToken(call).begin};
}

} // namespace

FailureExplanation ExplainFailure(const FailedRun& run) {
  return Explainer(run).Explain();
}
