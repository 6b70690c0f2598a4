// What somebody types at a prompt, input by input, as programs for the engine.
#pragma once

#include "scriptrt/run/PromptReading.h"

#include <cstdint>
#include <string_view>

// A place for people: lines and columns from 1, in the input or in a function of an earlier one.
struct PromptPlace {
  std::string function; // empty: in the input
  std::uint64_t line = 1;
  std::uint64_t column = 1; // in bytes
};

// The functions that earlier inputs have defined stand in front of each new one, so that each program has them anew;
// the variables that they have declared are variables from outside, which keep their values. What an input defines
// itself is taken out of it before it runs. A definition stands for the one of the same name before it.
class PromptProgram {
public:
  enum class Kind {
    kStatements,   // with the last semicolon or without it
    kExpression,   // which has a value
    kFunctionName, // of a function, and nothing else
    kUnfinished,   // the text could go on
    kWrong,
  };
  // The function of Text() whose value is an expression's.
  static constexpr const char* kValueFunction = "value_of_the_input";

  // The variables must outlive this.
  explicit PromptProgram(ExternalVariables& variables) : m_variables(variables) {}

  // Reads an input. When it is right, its variables are declared and its functions defined; otherwise nothing has
  // changed. [while nothing runs]
  Kind Read(const std::string& input);

  // What is to be run of an input that is right: the main program, or of an expression kValueFunction. A zero byte
  // follows.
  const std::string& Text() const { return m_text; }
  // Of an offset in Text().
  PromptPlace PlaceOf(std::size_t offset) const;

  // What is wrong with an input that is wrong or unfinished, and where.
  const char* Problem() const { return m_problem; }
  const PromptPlace& ProblemPlace() const { return m_problemPlace; }

  // In the order in which the engine reads them.
  const std::vector<PromptFunction>& Functions() const { return m_functions; }

private:
  using FunctionList = std::vector<PromptFunction>;

  PromptText With(const FunctionList& functions, const std::string& input) const;
  PromptPlace PlaceIn(const FunctionList& functions, const PromptText& text, std::size_t offset) const;
  Kind Judge(const PromptText& statements, const PromptReading& asStatements, PromptText expression);
  Kind Complain(const FunctionList& functions, const PromptText& text, const PromptReading& reading);
  Kind Define(const PromptReading& reading);

  ExternalVariables& m_variables;
  FunctionList m_functions;
  PromptText m_parts; // of Text()
  std::string m_text;
  const char* m_problem = "";
  PromptPlace m_problemPlace;
};
