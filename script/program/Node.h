// A script as data: a list of nodes in the order of the text, parents in front of their parts.
//
// A body is a run of statements. A statement is one node with its parts behind it:
//
//   kAssign, kAssignResult   what is assigned: a chain
//   kEvaluate                a chain, for its effects
//   kIf                      the condition: a chain; the statements; the statements of `else`
//   kWhile                   the condition: a chain; the statements
//   kFunction                the body's statements; no statement, but passed over where it stands
//
// A chain is an expression: operands and operators in the order of the text, since all operators have one rank and
// group to the right. `-a + f(b)` is kChain, kUnary -, kName a, kBinary +, kCall f (with its arguments and their end).
#pragma once

#include <cstdint>
#include <deque>

// Number of a node in its program.
using NodeIndex = std::uint32_t;
// Number of a declaration in its program.
using DeclarationIndex = std::uint32_t;
inline constexpr std::uint32_t kNoIndex = 0xFFFFFFFF;

enum class NodeKind : std::uint8_t {
  kAssign,        // `op`; value: the declaration on the left; place: of the name
  kAssignResult,  // `op`; place: of the function's name
  kEvaluate,      // place: of the first token
  kIf,            // value: number of the statement; end: behind all of it
  kWhile,         // the same
  kFunction,      // value: number of the function; end: behind its body
  kChain,         // value: behind its last node; place: of the token behind it; hasCalls
  kUnary,         // `op`; place
  kBinary,        // `op`; place
  kNumber,        // type; value: low 32 bits of a number of 32 bits; place
  kConstant,      // value: number of the constant; place
  kMalformed,     // value: the error that evaluating it gives; place
  kName,          // value: the declaration; place
  kCall,          // value: the declaration; end: behind the arguments; place: of the name. Arguments, kArgumentsEnd
  kConvert,       // type; value: NameId; end: behind the chain; place: of the name. A chain
  kParenthesis,   // place. A chain
  kValueArgument, // place: of the first token. A chain
  kReference,     // value: the declaration; place: of the name
  kArgumentsEnd,  // place: of the closing parenthesis
};

// 16 bytes. A place is the offset in the text where reading a token began, which is where errors are reported.
struct Node {
  NodeKind kind;
  std::uint8_t op = 0;   // Operator; of literals and conversions the DataType
  bool hasCalls = false; // of a chain: something in it may change variables
  std::uint32_t place = 0;
  std::uint32_t value = 0;
  NodeIndex end = 0;
};
static_assert(sizeof(Node) == 16);

using Nodes = std::deque<Node>; // grows without moving, so that reading needs no second copy
