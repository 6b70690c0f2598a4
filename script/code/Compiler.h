// Makes code of one function's body, when it is first entered.
//
// By then all declarations of the body are known, which is when names are settled: a body's own names are those of the
// whole body, those from outside are what stood above when it was read. Where the text, read with that in mind, would
// fail, the code fails: the error of an expression is an instruction, not an error of compiling.
#pragma once

#include "script/code/Code.h"
#include "script/program/ScriptProgram.h"

#include <memory>
#include <vector>

// What an operand is while code is made: a number or text that is known, or a slot.
struct CodeOperand {
  DataType type = DataType::kNone; // kNone: the slot's tag tells
  bool isConstant = false;
  bool isOwned = false; // a slot that only this operand uses; texts in it are to be released
  std::uint32_t slot = 0;
  std::uint64_t bits = 0;   // of a constant number
  TextBody* text = nullptr; // of a constant text

  bool IsNumber() const { return IsNumeric(type); }
  bool IsText() const { return type == DataType::kString; }
  bool IsDynamic() const { return type == DataType::kNone; }
};

// An expression but for its outermost operator, which whoever receives the value applies.
struct PendingOperation {
  enum class Kind : std::uint8_t { kValue, kUnary, kBinary };
  Kind kind = Kind::kValue;
  Operator op = Operator::kAssign;
  CodeOperand left; // the value, or what a unary operator is applied to
  CodeOperand right;
  std::uint32_t place = 0;
};

// Who receives a value. See CONXScriptVariable::ApplyBinaryOperator: the type of the receiver decides.
struct CodeReceiver {
  std::uint32_t slot;
  DataType type = DataType::kNone; // kNone: takes the value's type
  bool isTagged = false;           // of no type: its tag must be right, also of a number
  std::uint32_t call = 0;          // not 0: an argument of the function in that slot, which decides the type
};

class Compiler {
public:
  struct Options {
    bool hasReferences = false; // for calls with references among the arguments
    bool isWatched = false;     // with instructions for a watcher
  };
  Compiler(ScriptProgram& program, CONXScriptProgramFunc& function, const Options& options);

  // Throws std::bad_alloc, also when the stack is too small for the nesting of the text.
  std::unique_ptr<Code> Compile();

private:
  // A loop whose body is being compiled.
  struct LoopTail {
    std::uint32_t head;                 // where the condition begins
    std::vector<std::uint32_t>* leaves; // jumps to behind the loop
    bool isSimple = false;              // the condition is the one instruction at `head`
  };
  // What happens behind the last statement of a body.
  struct Tail {
    LoopTail* loop = nullptr; // the next round
    bool returns = false;     // the function ends
    bool Falls() const { return !loop && !returns; }
  };

  // What a call is for.
  enum class Wanted : std::uint8_t { kEffects, kResult };

  // The first arguments of a call, evaluated already.
  struct PreparedArguments {
    static constexpr std::size_t kMost = 3;
    CodeOperand operands[kMost];
    std::size_t count = 0;
    NodeIndex behind = 0; // the argument that comes next
  };

  // Statements (Statements.cpp).
  void CompileStatements(NodeIndex first, NodeIndex end, const Tail& tail);
  NodeIndex CompileStatement(NodeIndex at, const Tail& tail);
  NodeIndex CompileAssignment(NodeIndex at);
  NodeIndex CompileResultAssignment(NodeIndex at);
  NodeIndex CompileEvaluation(NodeIndex at);
  void CompileIf(NodeIndex at, const Tail& tail);
  void CompileBranch(const CONXScriptBlock& block, NodeIndex first, NodeIndex end, const Tail& tail);
  void CompileWhile(NodeIndex at);
  std::vector<std::uint32_t> CompileCondition(NodeIndex at, bool* isSimple);
  void EmitTail(const Tail& tail);
  void EmitRound(const LoopTail& loop);
  void EmitReset(const CONXScriptBlock& block);
  void EmitRelease(const CONXScriptBlock& block);

  // Names (Names.cpp).
  void EnterBody(const CONXScriptBlock& block);
  void LeaveBody(const CONXScriptBlock& block);
  const Declaration& Resolve(DeclarationIndex index) const;
  const Declaration* ResolveTypeName(NameId name) const;
  bool IsLocal(const Declaration& variable) const;
  std::uint32_t HopsTo(std::uint32_t function) const;
  DataType TypeOf(const Declaration& variable) const;
  CodeOperand LoadVariable(const Declaration& variable);
  void EmitStore(const Declaration& variable, std::uint32_t from);
  void EmitReference(const Declaration& variable, std::uint32_t slot);
  void EmitFunction(const Declaration& function, std::uint32_t slot);

  // Expressions (Expressions.cpp).
  PendingOperation CompileChain(NodeIndex chain);
  CodeOperand CompileOperand(NodeIndex* at);
  CodeOperand CompileInside(NodeIndex chain);
  CodeOperand CompileConversion(NodeIndex at);
  void CompileEffects(NodeIndex chain);
  void CompileOperandEffects(NodeIndex* at);
  void FailWhereCut();

  // Calls (Calls.cpp).
  CodeOperand CompileCall(const Declaration& callee, NodeIndex at, Wanted wanted);
  CodeOperand CompileProgramCall(const Declaration& callee, CONXScriptProgramFunc& function, NodeIndex at,
                                 Wanted wanted);
  CodeOperand CompileBuiltInCall(CONXScriptFunc& function, NodeIndex at, Wanted wanted);
  bool CompilePureCall(const CONXScriptFunc& function, NodeIndex at, PreparedArguments* prepared, CodeOperand* result);
  CodeOperand CompileDynamicCall(const Declaration& callee, NodeIndex at, Wanted wanted);
  bool CompileReference(const Node& node, std::uint32_t slot);
  std::uint32_t BeginCall();
  CodeOperand EndCall(std::uint32_t call, DataType type, Wanted wanted);
  template <typename Value, typename Reference>
  std::uint32_t ForEachArgument(NodeIndex at, std::uint32_t call, Value&& value, Reference&& reference,
                                const PreparedArguments& prepared);

  // Operators (Operators.cpp).
  CodeOperand ValueOf(const PendingOperation& pending, std::uint32_t slot);
  void Receive(const PendingOperation& pending, const CodeReceiver& receiver);
  void ReceiveValue(const PendingOperation& pending, const CodeReceiver& receiver);
  void ReceiveUnary(const PendingOperation& pending, const CodeReceiver& receiver);
  void ReceiveBinary(const PendingOperation& pending, const CodeReceiver& receiver);
  void ReceiveTexts(const PendingOperation& pending, const CodeReceiver& receiver);
  void ReceiveGeneral(const PendingOperation& pending, const CodeReceiver& receiver);
  DataType StaticTypeOf(const PendingOperation& pending) const;
  bool IsKnown(const PendingOperation& pending, CodeOperand* value) const;
  void EmitNumeric(Operator op, DataType type, CodeOperand left, CodeOperand right, std::uint32_t slot,
                   std::uint32_t place);
  void EmitDivision(Operator op, DataType type, const CodeOperand& left, const CodeOperand& right, std::uint32_t slot,
                    std::uint32_t place);
  void EmitShift(Operator op, DataType type, const CodeOperand& left, const CodeOperand& right, std::uint32_t slot);
  void EmitUnary(Operator op, DataType type, const CodeOperand& operand, std::uint32_t slot);
  void EmitNarrow(DataType from, DataType to, std::uint32_t source, std::uint32_t slot);
  void EmitTextEqual(const PendingOperation& pending, std::uint32_t slot);
  void EmitJumpUnless(const PendingOperation& pending, std::vector<std::uint32_t>* jumps);

  // Assignment (Assignment.cpp).
  void Assign(const Declaration& target, Operator op, const PendingOperation& value);
  void AssignNumber(const Declaration& target, Operator op, const PendingOperation& value, std::uint32_t slot);
  void AssignText(std::uint32_t variable, Operator op, const PendingOperation& value);
  void AssignGeneral(const Declaration& target, Operator op, const PendingOperation& value);

  // Slots and instructions (Compiler.cpp).
  std::uint32_t NewSlot();
  void SetTop(std::uint32_t top);
  std::uint32_t InSlot(const CodeOperand& operand);
  CodeOperand Tagged(const CodeOperand& operand);
  std::uint32_t Emit(Instruction instruction, std::uint32_t place = 0);
  std::uint32_t Emit(Op op, std::uint32_t a, std::uint32_t b = 0, std::uint32_t c = 0, std::uint16_t n = 0,
                     std::uint64_t k = 0, std::uint32_t place = 0);
  void EmitText(Op op, std::uint32_t a, std::uint32_t b, TextBody* text, std::uint16_t n = 0, std::uint32_t place = 0);
  void Fail(ScriptError error, std::uint32_t place);
  std::uint32_t Here() const { return static_cast<std::uint32_t>(m_code->instructions.size()); }
  void JumpsToHere(const std::vector<std::uint32_t>& jumps);
  const Node& NodeAt(NodeIndex index) const { return m_program.nodes[index]; }

  ScriptProgram& m_program;
  CONXScriptProgramFunc& m_function;
  const bool m_isMain;
  const bool m_hasReferences;
  const bool m_isWatched;
  std::unique_ptr<Code> m_code;
  std::uint32_t m_body = 0;         // number of the body that is being compiled
  std::uint32_t m_top;              // the first slot that nobody uses
  std::uint32_t m_place = kNoPlace; // where reading would be behind the statement that was compiled last
  std::uint32_t m_cut = kNoPlace;   // where the chain that was compiled last breaks off, because a name hides another
  std::vector<DeclarationIndex> m_hiddenNames; // what LeaveBody puts back, and how many there are
};
