// The machine's instructions: the one list from which their numbers, their names and the dispatch are made.
//
// R[x] is slot x of the running function's frame; R[x] alone means its number, whose type the compiler knows. `k` is
// the instruction's 64-bit constant, `n` its small number. "Tagged" slots also say their type; that of a number which
// code of known types computes is not written. An owned text is released by the instruction that uses it (see
// OwnedFlag).
//
// What a call needs lies on top of the caller's frame, so that the arguments need not move:
//
//   R[a]      the result: untyped, or absent when nobody wants it; before a call through a parameter the function
//   R[a + 1]  the frame of the function around the callee
//   R[a + 2…] the arguments
#pragma once

#include "script/value/ScriptError.h"

#include <cstdint>

// Jumps and values of comparisons come in pairs, each the opposite of its neighbour. COMPARE(name, expression)
#define SCRIPT_COMPARISONS(COMPARE)                                                                                    \
  COMPARE(Equal, l == r)                                                                                               \
  COMPARE(NotEqual, l != r)                                                                                            \
  COMPARE(LessSigned, Signed(l) < Signed(r))                                                                           \
  COMPARE(NotLessSigned, Signed(l) >= Signed(r))                                                                       \
  COMPARE(GreaterSigned, Signed(l) > Signed(r))                                                                        \
  COMPARE(NotGreaterSigned, Signed(l) <= Signed(r))                                                                    \
  COMPARE(Less, l < r)                                                                                                 \
  COMPARE(NotLess, l >= r)                                                                                             \
  COMPARE(Greater, l > r)                                                                                              \
  COMPARE(NotGreater, l <= r)                                                                                          \
  COMPARE(CommonBits, (l & r) != 0)                                                                                    \
  COMPARE(NoCommonBits, (l & r) == 0)

// R[a] := the expression of l = R[b] and r = R[c] or k. ARITHMETIC(name, expression)
#define SCRIPT_ARITHMETIC(ARITHMETIC)                                                                                  \
  ARITHMETIC(Add, l + r)                                                                                               \
  ARITHMETIC(AddInt32, SignExtended(l + r))                                                                            \
  ARITHMETIC(AddUint32, ZeroExtended(l + r))                                                                           \
  ARITHMETIC(Subtract, l - r)                                                                                          \
  ARITHMETIC(SubtractInt32, SignExtended(l - r))                                                                       \
  ARITHMETIC(SubtractUint32, ZeroExtended(l - r))                                                                      \
  ARITHMETIC(Multiply, l* r)                                                                                           \
  ARITHMETIC(MultiplyInt32, SignExtended(l* r))                                                                        \
  ARITHMETIC(MultiplyUint32, ZeroExtended(l* r))                                                                       \
  ARITHMETIC(And, l& r)                                                                                                \
  ARITHMETIC(Or, l | r)                                                                                                \
  ARITHMETIC(Xor, l ^ r)                                                                                               \
  ARITHMETIC(ShiftLeft, Shift(ShiftTo::kLeft, {l, false}, r))                                                          \
  ARITHMETIC(ShiftLeftSigned, Shift(ShiftTo::kLeft, {l, true}, r))                                                     \
  ARITHMETIC(ShiftRight, Shift(ShiftTo::kRight, {l, false}, r))                                                        \
  ARITHMETIC(ShiftRightSigned, Shift(ShiftTo::kRight, {l, true}, r))

// The same where r is not 0; 0 is division by zero. DIVISION(name, expression)
#define SCRIPT_DIVISIONS(DIVISION)                                                                                     \
  DIVISION(Divide, l / r)                                                                                              \
  DIVISION(Remainder, l % r)                                                                                           \
  DIVISION(DivideSigned, Quotient(l, r))                                                                               \
  DIVISION(RemainderSigned, RemainderOf(l, r))

// INSTRUCTION(name, effect)
#define SCRIPT_PLAIN_INSTRUCTIONS(INSTRUCTION)                                                                         \
  INSTRUCTION(Move, "R[a] := R[b]")                                                                                    \
  INSTRUCTION(NarrowInt32, "R[a] := low 32 bits of R[b], signed")                                                      \
  INSTRUCTION(NarrowUint32, "R[a] := low 32 bits of R[b]")                                                             \
  INSTRUCTION(Number, "R[a] := k")                                                                                     \
  INSTRUCTION(TaggedNumber, "R[a] := k of type n")                                                                     \
  INSTRUCTION(Tag, "R[a] is of type n")                                                                                \
  INSTRUCTION(TaggedMove, "R[a] := R[b] of type n")                                                                    \
  INSTRUCTION(Copy, "R[a] := R[b], tagged")                                                                            \
  INSTRUCTION(ShiftLeftBy, "R[a] := R[b] << k, 0 < k < 64")                                                            \
  INSTRUCTION(ShiftRightBy, "R[a] := R[b] >> k, 0 < k < 64")                                                           \
  INSTRUCTION(ShiftRightSignedBy, "R[a] := R[b] >> k with its sign, 0 < k < 64")                                       \
  INSTRUCTION(Negate, "R[a] := -R[b]")                                                                                 \
  INSTRUCTION(Not, "R[a] := R[b] == 0")                                                                                \
  INSTRUCTION(Invert, "R[a] := ~R[b]")                                                                                 \
  INSTRUCTION(Text, "R[a] := the constant text; R[a] holds none")                                                      \
  INSTRUCTION(AssignText, "variable R[a] := text R[b]")                                                                \
  INSTRUCTION(MoveText, "variable R[a] := text R[b], which is left without one")                                       \
  INSTRUCTION(AssignConstant, "variable R[a] := the constant text")                                                    \
  INSTRUCTION(Append, "variable R[a] += text R[b]; n: owned")                                                          \
  INSTRUCTION(AppendConstant, "variable R[a] += the constant text")                                                    \
  INSTRUCTION(Join, "R[a] := text R[b] + text R[c]; n: owned")                                                         \
  INSTRUCTION(TextEqual, "R[a] := text R[b] == text R[c]; n: owned, or opposite")                                      \
  INSTRUCTION(TextEqualConstant, "R[a] := text R[b] == the constant text; n: owned, or opposite")                      \
  INSTRUCTION(JumpIfText, "if text R[b] == the constant text go to a; n: owned, or opposite")                          \
  INSTRUCTION(Release, "R[a] holds nothing any more")                                                                  \
  INSTRUCTION(ResetNumbers, "b variables from R[a] on := 0 of type n")                                                 \
  INSTRUCTION(ResetTexts, "b variables from R[a] on := empty text")                                                    \
  INSTRUCTION(LoadParameter, "R[a] := R[b] or what that refers to, tagged")                                            \
  INSTRUCTION(LoadGlobal, "R[a] := variable b of the main program, tagged")                                            \
  INSTRUCTION(LoadOuter, "R[a] := R[b] of the frame n around, or what that refers to, tagged")                         \
  INSTRUCTION(LoadPredefined, "R[a] := the variable, tagged")                                                          \
  INSTRUCTION(StoreParameter, "R[b] or what that refers to := number R[a]")                                            \
  INSTRUCTION(StoreGlobal, "variable b of the main program := number R[a]")                                            \
  INSTRUCTION(StoreOuter, "R[b] of the frame n around, or what that refers to, := number R[a]")                        \
  INSTRUCTION(StorePredefined, "the variable := number R[a]")                                                          \
  INSTRUCTION(Refer, "R[a] := reference to R[b] of type n")                                                            \
  INSTRUCTION(ReferGlobal, "R[a] := reference to variable b of the main program")                                      \
  INSTRUCTION(ReferOuter, "R[a] := reference to R[b] of the frame c around, of type n")                                \
  INSTRUCTION(ReferPredefined, "R[a] := reference to the variable")                                                    \
  INSTRUCTION(Function, "R[a] := function k with the frame c around, all ones: of the main program")                   \
  INSTRUCTION(LoadFunction, "R[a] := function R[b] of the frame c around")                                             \
  INSTRUCTION(AssignDynamic, "variable R[a] of type n := tagged R[b], owned")                                          \
  INSTRUCTION(AssignGeneral, "variable R[a], operator n, tagged R[b]; k: owned")                                       \
  INSTRUCTION(AssignReferred, "what R[a] refers to, operator n, tagged R[b]; k: owned")                                \
  INSTRUCTION(AssignResultNumber, "R[0] := R[b] of type n, unless absent")                                             \
  INSTRUCTION(AssignResult, "R[0], operator n, tagged R[b], unless absent; k: owned")                                  \
  INSTRUCTION(ConvertGeneral, "R[a] := tagged R[b] as the receiver k; n: owned")                                       \
  INSTRUCTION(UnaryGeneral, "R[a] := operator n of tagged R[b] as the receiver k; n: owned")                           \
  INSTRUCTION(BinaryGeneral, "R[a] := tagged R[b], operator n, tagged R[c] as the receiver k; n: owned")               \
  INSTRUCTION(Jump, "go to a")                                                                                         \
  INSTRUCTION(JumpUnlessDynamic, "unless tagged R[b] go to a")                                                         \
  INSTRUCTION(CheckStop, "end with 13 when a stop was asked for")                                                      \
  INSTRUCTION(Loop, "end with 13 when a stop was asked for; go to a")                                                  \
  INSTRUCTION(Call, "call a function of the program; b: frames around, 0: main; n: CallFlag")                          \
  INSTRUCTION(CallBuiltIn, "call a built-in with b arguments; n: CallFlag")                                            \
  INSTRUCTION(CallPure, "R[a] := pure function of R[b], R[c], R[n]")                                                   \
  INSTRUCTION(CallDynamic, "call function R[a] with b arguments; n: CallFlag")                                         \
  INSTRUCTION(CheckValue, "R[a] is going to be a value argument of function R[b]")                                     \
  INSTRUCTION(CheckReference, "R[a] is a reference argument of function R[b]")                                         \
  INSTRUCTION(Return, "leave the function")                                                                            \
  INSTRUCTION(ReleaseAndReturn, "b slots from R[a] on hold nothing any more; leave the function")                      \
  INSTRUCTION(LeavePiece, "a call that a new piece of the stack was for has ended")                                    \
  INSTRUCTION(End, "leave the machine")                                                                                \
  INSTRUCTION(Fail, "end with error k")                                                                                \
  INSTRUCTION(WatchStatement, "tell the watcher that a statement begins")                                              \
  INSTRUCTION(WatchEnter, "tell the watcher that a function is entered")                                               \
  INSTRUCTION(WatchLeave, "tell the watcher that a function is left")

enum class Op : std::uint16_t {
#define SCRIPT_ONE(name, effect) k##name,
#define SCRIPT_TWO(name, effect) k##name, k##name##Constant,
#define SCRIPT_SIX(name, effect)                                                                                       \
  k##name, k##name##Constant, kJumpIf##name, kJumpIf##name##Constant, kLoopIf##name, kLoopIf##name##Constant,
  SCRIPT_COMPARISONS(SCRIPT_SIX) SCRIPT_ARITHMETIC(SCRIPT_TWO) SCRIPT_DIVISIONS(SCRIPT_TWO)
      SCRIPT_PLAIN_INSTRUCTIONS(SCRIPT_ONE)
#undef SCRIPT_ONE
#undef SCRIPT_TWO
#undef SCRIPT_SIX
          kCount
};

// The forms of a comparison, in the order of the enumeration. Jumps and loops: to a, comparing R[b] with R[c] or k; a
// loop also ends with 13 when a stop was asked for.
enum class CompareForm : std::uint16_t { kValue = 0, kJump = 2, kLoop = 4 };
inline constexpr std::uint16_t kCompareForms = 6;

enum OwnedFlag : std::uint16_t {
  kOwnsLeft = 0x100,
  kOwnsRight = 0x200,
  kOpposite = 0x400, // of TextEqual and its relatives
};

enum CallFlag : std::uint16_t {
  kWantsResult = 1,
  kHasReferences = 2, // among the arguments
};

// The receiver of a general operation: a DataType, or the parameter that the call at slot `k >> 32` is evaluated for.
inline constexpr std::uint64_t kReceiverOfCall = 0xFF;

class CONXScriptFunc;
class CONXScriptProgramFunc;
class CONXScriptVariable;
struct TextBody;

// 24 bytes. Places of errors stand beside the code, since only a failure asks for them.
struct Instruction {
  Op op = Op::kEnd;
  std::uint16_t n = 0;
  std::uint32_t a = 0;
  std::uint32_t b = 0;
  std::uint32_t c = 0;
  union {
    std::uint64_t k = 0;
    TextBody* text;
    CONXScriptFunc* callee;
    ScriptError (*pure)(CONXScriptVariable&, const CONXScriptVariable&, const CONXScriptVariable&,
                        const CONXScriptVariable&);
    CONXScriptProgramFunc* function;
    CONXScriptVariable* variable;
  };
};
static_assert(sizeof(Instruction) == 24);

const char* NameOf(Op op);
