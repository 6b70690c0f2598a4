// A value holder of the script language: untyped, a number of four types, or a byte string.
//
// There is no conversion between numbers and strings. Numbers are kept widened to 64 bits by their type's signedness
// and are cut to their type's width when stored. An operation that fails leaves the value as it was.
#pragma once

#include "script/DataType.h"
#include "script/Literals.h"
#include "script/Operators.h"
#include "script/ScriptError.h"
#include "script/SharedText.h"

#include <cstdint>
#include <string>
#include <string_view>

// A variable that refers to another one is an alias of it: every operation acts on the other, which it does not own.
class CONXScriptVariable {
public:
  CONXScriptVariable() = default;
  explicit CONXScriptVariable(CONXScriptVariable* reference) : m_reference(reference->Target()) {}
  explicit CONXScriptVariable(DataType type) : m_type(type) {}
  CONXScriptVariable(CONXScriptVariable&&) noexcept = default;
  CONXScriptVariable& operator=(CONXScriptVariable&&) noexcept = default;
  CONXScriptVariable(const CONXScriptVariable&) = delete;
  CONXScriptVariable& operator=(const CONXScriptVariable&) = delete;

  bool IsReference() const { return m_reference != nullptr; }
  DataType GetType() const { return Target()->m_type; }
  // Keeps whatever value is there.
  void SetType(DataType type) { Target()->m_type = type; }
  // Makes this an ordinary variable of the type, zero or empty.
  void Reset(DataType type);

  // Takes the literal's type and value.
  ScriptError SetFromLiteral(const Literal& literal);
  // Stores a number cut to this variable's width; an untyped variable takes the hint as its type first, if that is
  // numeric.
  ScriptError SetNumber(std::uint64_t value, DataType hint);
  // 0 if this is no number.
  std::uint64_t GetNumber() const;
  // An untyped variable becomes a string.
  ScriptError SetText(std::string bytes) { return SetSharedText(SharedText(std::move(bytes))); }
  ScriptError SetSharedText(SharedText text);
  // Empty if this is no string.
  const std::string& GetText() const { return GetSharedText().Bytes(); }
  const SharedText& GetSharedText() const;

  // An untyped target takes the source's type; an untyped source (a result that was never set) counts as zero or empty.
  ScriptError Assign(const CONXScriptVariable& source);
  // `op` is an assignment operator, this variable its left side.
  ScriptError ApplyAssignment(Operator op, const CONXScriptVariable& source);
  // This variable receives the result.
  ScriptError ApplyUnaryOperator(Operator op, const CONXScriptVariable& operand);
  ScriptError ApplyBinaryOperator(Operator op, const CONXScriptVariable& left, const CONXScriptVariable& right);

private:
  CONXScriptVariable* Target() { return m_reference ? m_reference : this; }
  const CONXScriptVariable* Target() const { return m_reference ? m_reference : this; }
  Operand AsOperand() const { return {GetNumber(), IsSigned(GetType())}; }
  ScriptError ApplyStringOperator(Operator op, const CONXScriptVariable& left, const CONXScriptVariable& right);

  DataType m_type = DataType::kNone;
  std::uint64_t m_bits = 0; // widened by the type
  SharedText m_text;
  CONXScriptVariable* m_reference = nullptr;
};
