// A value holder of the script language: untyped, a number of four types, or a byte string.
//
// There is no conversion between numbers and strings. Numbers are kept widened to 64 bits by their type's signedness
// and are cut to their type's width when stored. An operation that fails leaves the value as it was.
#pragma once

#include "script/value/DataType.h"
#include "script/value/Operators.h"
#include "script/value/ScriptError.h"
#include "script/value/SharedText.h"

#include <cstdint>
#include <string_view>

// 16 bytes, which are also a slot of the machine's stack. The machine works on the fields, because it knows from the
// program what they hold; everybody else uses the operations. A variable that refers to another one is an alias of it:
// every operation acts on the other, which it does not own.
class CONXScriptVariable {
public:
  CONXScriptVariable() = default;
  explicit CONXScriptVariable(CONXScriptVariable* reference)
      : target(reference->Target()), type(DataType::kReference) {}
  explicit CONXScriptVariable(DataType ofType) : type(ofType) {}
  CONXScriptVariable(CONXScriptVariable&& other) noexcept
      : bits(other.bits), type(other.type), function(other.function) {
    other.type = DataType::kNone;
  }
  CONXScriptVariable& operator=(CONXScriptVariable&& other) noexcept {
    if (this != &other) {
      Release();
      bits = other.bits;
      type = other.type;
      function = other.function;
      other.type = DataType::kNone;
    }
    return *this;
  }
  CONXScriptVariable(const CONXScriptVariable&) = delete;
  CONXScriptVariable& operator=(const CONXScriptVariable&) = delete;
  ~CONXScriptVariable() { Release(); }

  bool IsReference() const { return type == DataType::kReference; }
  DataType GetType() const { return Target()->type; }
  // Makes this an ordinary variable of the type, zero or empty.
  void Reset(DataType toType) {
    Release();
    bits = 0;
    type = toType;
  }
  // An untyped variable again, of which nothing is left.
  void Release() {
    if (type == DataType::kString)
      ReleaseText(text);
    type = DataType::kNone;
  }

  // Stores a number cut to this variable's width; an untyped variable takes the hint as its type first, if that is
  // numeric.
  ScriptError SetNumber(std::uint64_t value, DataType hint);
  // 0 if this is no number.
  std::uint64_t GetNumber() const;
  // An untyped variable becomes a string.
  ScriptError SetText(std::string_view bytes) { return SetSharedText(SharedText(bytes)); }
  ScriptError SetSharedText(SharedText shared);
  // Empty if this is no string. A zero byte follows. Valid until the variable changes.
  std::string_view GetText() const;
  SharedText GetSharedText() const;

  // An untyped target takes the source's type; an untyped source (a result that was never set) counts as zero or empty.
  ScriptError Assign(const CONXScriptVariable& source);
  // `op` is an assignment operator, this variable its left side.
  ScriptError ApplyAssignment(Operator op, const CONXScriptVariable& source);
  // This variable receives the result.
  ScriptError ApplyUnaryOperator(Operator op, const CONXScriptVariable& operand);
  ScriptError ApplyBinaryOperator(Operator op, const CONXScriptVariable& left, const CONXScriptVariable& right);

  CONXScriptVariable* Target() { return IsReference() ? target : this; }
  const CONXScriptVariable* Target() const { return IsReference() ? target : this; }

  // --- the machine's

  union {
    std::uint64_t bits = 0;     // of a number
    TextBody* text;             // of a string: a share of it; null is the empty text
    CONXScriptVariable* target; // of a reference; of a function: the frame of the function around it
  };
  DataType type = DataType::kNone;
  std::uint32_t function = 0; // number of a function in its program

private:
  Operand AsOperand() const { return {GetNumber(), IsSigned(GetType())}; }
  ScriptError ApplyStringOperator(Operator op, const CONXScriptVariable& left, const CONXScriptVariable& right);
};
static_assert(sizeof(CONXScriptVariable) == 16);

// The type of a numeric operation's result when nothing else decides it.
constexpr DataType ResultTypeOf(Operator op, DataType left, DataType right) {
  if (op == Operator::kShiftLeft || op == Operator::kShiftRight)
    return left;
  return NumericType(Is64Bit(left) || Is64Bit(right), IsSigned(left) || IsSigned(right));
}
