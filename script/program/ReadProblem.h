// What keeps a text from being a program, as the reader meets it.
#pragma once

#include "script/source/Scanner.h"

// What the reader looked for where it failed.
enum class Expectation : std::uint8_t {
  kWellFormedToken,
  kStatement,
  kSemicolon,      // behind a statement
  kDeclarationEnd, // the same behind `var TYPE NAME`
  kType,
  kVariableName,
  kFunctionName,
  kParametersBegin,
  kParameter,
  kParametersGoOn, // or end
  kConditionBegin,
  kConditionEnd,
  kBlock,
  kElseBlock,
  kBlockEnd,
  kAssignment, // behind the name of a variable
  kOperand,
  kParenthesisEnd,
  kConversionBegin,
  kConversionEnd,
  kArgumentsBegin,
  kArgumentsGoOn, // or end
  kReferredName,
  kDeclaredName,
  kCount,
};

struct ReadProblem {
  static constexpr NameId kNoName = 0xFFFFFFFF;

  ScriptError error = kScriptOk;
  Expectation expected = Expectation::kWellFormedToken;
  Token found;               // what stands there instead
  NameId subject = kNoName;  // kAssignment, kArgumentsBegin: the name in front of it
  NameId function = kNoName; // whose body it is in; none in the main program
  std::uint32_t opened = 0;  // kBlockEnd: place of the brace that began the block
};

// Who wants to know all problems of a text. The reader passes over what it cannot read then and goes on: a name that
// nothing declares counts as declared, a malformed token as a number, and behind anything else the next statement is
// looked for.
class ProblemSink {
public:
  // In the order in which the reader meets them; the first is the one that a run reports. The program is as it has been
  // read so far. Nothing further is read when this returns false.
  virtual bool Take(const ReadProblem& problem) = 0;

protected:
  ~ProblemSink() = default;
};
