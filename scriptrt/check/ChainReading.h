// What a program says about an expression without running it: its parts in the text, and their types as far as they are
// known. The rules of the operators are asked of the operators themselves.
#pragma once

#include "script/program/ScriptProgram.h"
#include "scriptrt/check/ScriptProblem.h"

// An operator, or an operand with everything that belongs to it.
struct ChainPart {
  NodeIndex node;
  NodeIndex end; // behind it
};

// An operator that does not take its sides.
struct OperatorMisfit {
  NodeIndex op;
  DataType left = DataType::kNone; // of a unary operator: kNone
  DataType right = DataType::kNone;
};

class ChainReading {
public:
  // The program has been read without problems, and must outlive this.
  explicit ChainReading(const ScriptProgram& program) : m_program(program) {}

  std::vector<ChainPart> PartsOf(NodeIndex chain) const;
  // kNone where only a run can tell. Of an operator that does not take its sides, `misfit` is the first to be computed;
  // it stays as it is when there is none.
  DataType TypeOf(NodeIndex chain, std::optional<OperatorMisfit>* misfit = nullptr) const;
  DataType TypeOfOperand(NodeIndex node) const;

  TextRange RangeOf(NodeIndex chain) const;
  // From the node's first character to the end of its chain.
  TextRange RangeFrom(NodeIndex node, NodeIndex chain) const;
  TextRange RangeOfToken(NodeIndex node) const;
  std::string_view TextOf(const TextRange& range) const;

  // The chain that ends in front of the token at this place; kNoIndex if there is none.
  NodeIndex ChainEndingAt(std::uint32_t place) const;
  // The call whose closing parenthesis is there.
  NodeIndex CallEndingAt(std::uint32_t place) const;
  // The call that has an argument there, and which: the first is 0.
  NodeIndex CallWithArgumentAt(std::uint32_t place, std::size_t* index) const;
  // Nodes kValueArgument and kReference of a call.
  std::vector<NodeIndex> ArgumentsOf(NodeIndex call) const;

private:
  const Node& At(NodeIndex node) const { return m_program.nodes[node]; }
  std::string_view Text() const { return m_program.scanner.Text(); }
  Token TokenAt(std::uint32_t place) const;

  const ScriptProgram& m_program;
};
