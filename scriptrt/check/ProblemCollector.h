// Problems of reading, put into words while what the reader knows is still there.
#pragma once

#include "script/program/ScriptProgram.h"
#include "scriptrt/check/ScriptProblem.h"

class ProblemCollector final : public ProblemSink {
public:
  // No more are taken: a person mends these first.
  static constexpr std::size_t kMost = 20;

  // The program must outlive this.
  explicit ProblemCollector(ScriptProgram& program) : m_program(program) {}

  bool Take(const ReadProblem& problem) override;

  // To be called once, when the text has been read.
  std::vector<ScriptProblem> Finish();

private:
  // A problem about a name that nothing declares.
  struct UnknownName {
    NameId name;
    std::size_t problem; // number
    bool hasHint;
    bool isCalled;
    std::vector<std::uint64_t> furtherLines;
  };

  ScriptProblem Describe(const ReadProblem& problem) const;
  std::string MessageOf(const ReadProblem& problem) const;
  std::string HintFor(const ReadProblem& problem) const;
  std::string HintForDeclaration(const ReadProblem& problem) const;
  std::string HintForName(const ReadProblem& problem) const;
  std::string HintForMalformed(const ReadProblem& problem) const;
  std::string_view TextOf(const Token& token) const;
  std::string_view NearName(std::string_view wanted) const;
  std::string WhereDeclared(const UnknownName& unknown, std::uint32_t place) const;

  ScriptProgram& m_program;
  std::vector<ScriptProblem> m_problems;
  std::vector<UnknownName> m_unknown;
};
