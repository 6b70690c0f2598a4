// Reads a script's text into a program: the one grammar there is.
//
// The operations check the syntax as far as it can be known from what stands above. What a name leads to is looked up
// here, because that decides how the text goes on; a declaration further down in the same body can still hide it when
// the body runs (Compiler).
#pragma once

#include "script/program/ScriptProgram.h"

class ProgramReader {
public:
  explicit ProgramReader(ScriptProgram& program);

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
  ScriptError ExpectIdentifier(Token* token);
  ScriptError ExpectToken(char punctuation, ScriptError error = kUnexpectedToken);

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
  ScriptError ParseCondition();
  ScriptError ParseSimpleStatement(const Body& body);
  ScriptError ParseAssignment(NodeKind kind, const Token& name, Operator op, DeclarationIndex target);

  // Expressions.
  ScriptError ParseExpression();
  ScriptError ParseChain(NodeIndex chain);
  ScriptError ParseOperand(const Token& first, NodeIndex chain);
  ScriptError ParseName(const Token& name, NodeIndex chain);
  ScriptError ParseArguments(NodeIndex chain);
  ScriptError ParseArgument(NodeIndex chain);
  void AddNumber(const Token& token);
  void AddText(const Token& token);

  ScriptError ParseTypeAndName(Declaration* declared);
  DeclarationIndex Declare(Declaration declared, const Body& body);
  NodeIndex Add(const Node& node);
  NodeIndex Next() const { return static_cast<NodeIndex>(m_program.nodes.size()); }

  ScriptProgram& m_program;
  platform::StopEvent& m_stopEvent;
  std::uint32_t m_position = 0; // of the next token that was not put back
  Token m_putBack[2];           // the last one is read first
  unsigned m_putBackCount = 0;
};
