// Reads a script's text into a program: the one grammar there is.
//
// The operations check the syntax as far as it can be known from what stands above. What a name leads to is looked up
// here, because that decides how the text goes on; a declaration further down in the same body can still hide it when
// the body runs (Compiler).
#pragma once

#include "script/program/ReadProblem.h"
#include "script/program/ScriptProgram.h"

class ProgramReader {
public:
  // See ScriptProgram::Parse.
  ProgramReader(ScriptProgram& program, ProblemSink* problems);

  ScriptError ParseProgram();

private:
  // The body that is being read.
  struct Body {
    CONXScriptProgramFunc& function;
    CONXScriptBlock& block;
    bool isFunction; // and not a block in it
  };

  // Tokens.
  ScriptError GetToken(Token* token);
  void PutBack(const Token& token) { m_putBack[m_putBackCount++] = token; }
  ScriptError ExpectIdentifier(Token* token, Expectation expected);
  ScriptError ExpectToken(char punctuation, Expectation expected);
  ScriptError ExpectBlockEnd(std::uint32_t opened);
  // Notes why reading fails; leaves the error.
  ScriptError Unexpected(Expectation expected, NameId subject = ReadProblem::kNoName);

  // Statements.
  ScriptError ParseBody(const Body& body, unsigned depth);
  ScriptError ParseBlock(const Body& body, unsigned depth, NodeIndex* first, NodeIndex* end);
  ScriptError ParseStatement(const Body& body, unsigned depth, const Token& first);
  ScriptError ParseDeclaration(const Body& body);
  ScriptError ParseFunction(const Body& body, unsigned depth);
  ScriptError ParseParameters(CONXScriptProgramFunc& function);
  ScriptError ParseParameter(CONXScriptProgramFunc& function, const Token& first);
  ScriptError ParseIf(const Body& body, unsigned depth, const Token& word);
  ScriptError ParseElse(const Body& body, unsigned depth, CONXScriptIfStatement& statement);
  ScriptError ParseWhile(const Body& body, unsigned depth, const Token& word);
  ScriptError ParseCondition(const Body& body);
  ScriptError ParseSimpleStatement(const Body& body);
  ScriptError ParseAssignment(NodeKind kind, const Token& name, Operator op, DeclarationIndex target);

  // Expressions.
  ScriptError ParseExpression();
  ScriptError ParseChain(NodeIndex chain);
  ScriptError ParseOperand(const Token& first, NodeIndex chain);
  ScriptError ParseName(const Token& name, NodeIndex chain);
  ScriptError ParseArguments(NameId callee, NodeIndex chain);
  ScriptError ParseArgument(NodeIndex chain);
  void AddNumber(const Token& token);
  void AddText(const Token& token);

  // Going on behind problems (Recovery.cpp). Where nobody takes them, these leave the error that they are given.
  bool Report(ScriptError error);
  ScriptError PassOver(Token* malformed);
  ScriptError Recover(const Body& body, unsigned depth, ScriptError error);
  ScriptError FindBlock(const Body& body, ScriptError error);
  ScriptError ParseStrayBlock(const Body& body, unsigned depth);
  ScriptError ParseMoreDeclarations(const Body& body, DeclarationIndex first, ScriptError error);
  ScriptError ParseElseWithoutBlock(const Body& body, unsigned depth, ScriptError error);
  ScriptError ParseUnknownStatement(const Body& body, const Token& name);
  ScriptError ParseUnknownName(const Token& name, NodeIndex chain);
  ScriptError TakeUnknown(const Token& name, DeclarationIndex* declared);
  DeclarationIndex DeclareUnknown(const Token& name);
  void Rewind();
  Token Skip();
  bool SkipForeignText();
  bool SkipLoopEnd();
  bool IsSemicolonLeftOut() const;
  bool LooksLikeCall();
  std::uint32_t EndOfMalformed(const Token& token) const;
  bool IsFirstOnLine(const Token& token) const;
  bool BeginsStatement(const Token& token) const;
  bool LooksLikeStatement(const Token& token) const;

  ScriptError ParseTypeAndName(Declaration* declared);
  DeclarationIndex Declare(Declaration declared, const Body& body);
  NodeIndex Add(const Node& node);
  NodeIndex Next() const { return static_cast<NodeIndex>(m_program.nodes.size()); }

  ScriptProgram& m_program;
  platform::StopEvent& m_stopEvent;
  std::uint32_t m_position = 0; // of the next token that was not put back
  Token m_putBack[2];           // the last one is read first
  unsigned m_putBackCount = 0;

  ProblemSink* const m_problems; // null: the first problem ends reading
  ReadProblem m_problem;         // the latest
  Token m_reported;              // the token of the one that was told last
  bool m_hasReported = false;
  std::vector<DeclarationIndex> m_unknown; // by name: what stands for one that nothing declares
  std::vector<char> m_forgiven;            // by name: may have been declared in what could not be read
};
