#include "scriptrt/run/PromptProgram.h"

#include "script/value/ScriptError.h"
#include "util/AsciiCase.h"

#include <algorithm>

namespace {

// The last one of a name; null: there is none.
PromptFunction* Find(std::vector<PromptFunction>& functions, const std::string& name) {
  const auto found = std::find_if(functions.rbegin(), functions.rend(), [&](const PromptFunction& function) {
    return EqualsIgnoringCase(function.name, name);
  });
  return found != functions.rend() ? &*found : nullptr;
}

void Remove(std::vector<PromptFunction>& functions, const std::string& name) {
  std::erase_if(functions, [&](const PromptFunction& function) { return EqualsIgnoringCase(function.name, name); });
}

} // namespace

PromptText PromptProgram::With(const FunctionList& functions, const std::string& input) const {
  PromptText text;
  for (const PromptFunction& function : functions)
    text.before.append(function.text).append("\n");
  text.input = input;
  return text;
}

PromptProgram::Kind PromptProgram::Read(const std::string& input) {
  PromptText statements = With(m_functions, input);
  const PromptReading asStatements = ReadPrompt(statements, m_variables);
  if (!asStatements.problem)
    return Define(asStatements);
  if (asStatements.isFunctionName)
    return Kind::kFunctionName;

  PromptText expression = statements;
  expression.front = std::string("func ") + kValueFunction + "() { " + kValueFunction + " = ";
  expression.back = "\n; }";
  const PromptReading asExpression = ReadPrompt(expression, m_variables);
  if (!asExpression.problem && asExpression.isOneValue) {
    m_parts = expression;
    m_text = expression.Whole();
    return Kind::kExpression;
  }

  PromptText closed = statements;
  closed.back = "\n;";
  const PromptReading asClosed = ReadPrompt(closed, m_variables);
  if (!asClosed.problem)
    return Define(asClosed);
  return Judge(statements, asStatements, expression);
}

// Of an input that is neither. In parentheses, an expression that goes on is told from one that a semicolon ends.
PromptProgram::Kind PromptProgram::Judge(const PromptText& statements, const PromptReading& asStatements,
                                         PromptText expression) {
  expression.front += "(";
  expression.back = "\n); }";
  const PromptReading asOperand = ReadPrompt(expression, m_variables);
  const std::size_t ofStatements = asStatements.place - statements.InputStart();
  const std::size_t ofOperand = asOperand.problem ? asOperand.place - expression.InputStart() : 0;
  if (asStatements.isUnfinished || !asOperand.problem || ofOperand <= ofStatements)
    Complain(m_functions, statements, asStatements);
  else
    Complain(m_functions, expression, asOperand);
  return asStatements.isUnfinished || asOperand.isUnfinished ? Kind::kUnfinished : Kind::kWrong;
}

// A new function stands where the old one stood, for those behind that call it. When it calls some of these, it stands
// behind all of them, without the old one if nothing needs that.
PromptProgram::Kind PromptProgram::Define(const PromptReading& reading) {
  FunctionList kept = m_functions;
  for (const PromptVariable& variable : reading.variables)
    Remove(kept, variable.name);
  FunctionList inPlace = kept;
  FunctionList moved = kept;
  for (const PromptFunction& function : reading.functions) {
    if (PromptFunction* const old = Find(inPlace, function.name))
      *old = function;
    else
      inPlace.push_back(function);
    Remove(moved, function.name);
    moved.push_back(function);
    kept.push_back(function);
  }
  for (FunctionList* functions : {&inPlace, &moved, &kept}) {
    PromptText text = With(*functions, reading.rest);
    if (ReadPrompt(text, m_variables, reading.variables).problem)
      continue;
    m_functions = std::move(*functions);
    m_text = text.Whole();
    m_parts = std::move(text);
    for (const PromptVariable& variable : reading.variables)
      m_variables.Declare(variable.name, variable.type);
    return Kind::kStatements;
  }
  const PromptText text = With(kept, reading.rest);
  return Complain(kept, text, ReadPrompt(text, m_variables, reading.variables));
}

PromptProgram::Kind PromptProgram::Complain(const FunctionList& functions, const PromptText& text,
                                            const PromptReading& reading) {
  m_problem = reading.problem ? reading.problem : ErrorText(kUnexpectedToken);
  m_problemPlace = PlaceIn(functions, text, std::min(reading.place, text.InputStart() + text.input.size()));
  return Kind::kWrong;
}

PromptPlace PromptProgram::PlaceOf(std::size_t offset) const {
  return PlaceIn(m_functions, m_parts, offset);
}

PromptPlace PromptProgram::PlaceIn(const FunctionList& functions, const PromptText& text, std::size_t offset) const {
  PromptPlace place;
  std::string part = text.input + text.back;
  std::size_t start = text.InputStart();
  if (offset < text.before.size()) {
    start = 0;
    for (const PromptFunction& function : functions) {
      place.function = function.name;
      part = function.text;
      if (offset <= start + part.size())
        break;
      start += part.size() + 1;
    }
  }
  LineAndColumn(part, offset - std::min(start, offset), &place.line, &place.column);
  ++place.line;
  ++place.column;
  return place;
}
