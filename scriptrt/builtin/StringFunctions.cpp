#include "scriptrt/builtin/StringFunctions.h"

#include "script/value/NumberRange.h"
#include "script/value/NumberText.h"
#include "util/FindText.h"

namespace {

// Output is zero-terminated text, so a zero byte shows as the two characters \0.
std::string WithVisibleZeros(std::string_view bytes) {
  std::string visible;
  visible.reserve(bytes.size() + 8);
  for (const char byte : bytes) {
    if (byte == '\0')
      visible += "\\0";
    else
      visible += byte;
  }
  return visible;
}

using Value = CONXScriptVariable;

void SetText(Value& result, TextBody* text) {
  result.text = text;
  result.type = DataType::kString;
}

ScriptError SetPart(Value& result, std::string_view text, std::uint64_t start, std::uint64_t length) {
  SetText(result, start < text.size() ? NewText(text.substr(start, length)) : nullptr);
  return kScriptOk;
}

// As int32: -1 when there is none.
std::uint64_t PositionOf(std::string_view text, std::string_view searched, std::uint64_t start) {
  return NarrowedTo(DataType::kInt32, FindText(text, searched, start));
}

} // namespace

ScriptError CONXPrintFunc::Perform(const SysCall& call) {
  if (!Services().output)
    return kScriptOk;
  for (const CONXScriptVariable& argument : call.arguments) {
    const DataType type = argument.GetType(); // a function is neither
    const std::string_view text = argument.GetText();
    if (IsNumeric(type))
      Write(DecimalText(argument.GetNumber(), type).c_str());
    else if (type == DataType::kString && text.find('\0') == std::string_view::npos)
      Write(text.data());
    else if (type == DataType::kString)
      Write(WithVisibleZeros(text).c_str());
  }
  return kScriptOk;
}

PureFunction CONXStrlenFunc::FunctionFor(std::span<const DataType>) const {
  return [](Value& result, const Value& text, const Value&, const Value&) {
    result.bits = ViewOf(text.text).size();
    return kScriptOk;
  };
}

PureFunction CONXSubStrFunc::FunctionFor(std::span<const DataType> types) const {
  if (types.size() == 2)
    return [](Value& result, const Value& text, const Value& start, const Value&) {
      return SetPart(result, ViewOf(text.text), start.bits, std::string_view::npos);
    };
  return [](Value& result, const Value& text, const Value& start, const Value& length) {
    return SetPart(result, ViewOf(text.text), start.bits, length.bits);
  };
}

PureFunction CONXInstrFunc::FunctionFor(std::span<const DataType> types) const {
  if (types.size() == 2)
    return [](Value& result, const Value& text, const Value& searched, const Value&) {
      result.bits = PositionOf(ViewOf(text.text), ViewOf(searched.text), 0);
      return kScriptOk;
    };
  return [](Value& result, const Value& text, const Value& searched, const Value& start) {
    result.bits = PositionOf(ViewOf(text.text), ViewOf(searched.text), start.bits);
    return kScriptOk;
  };
}

PureFunction CONXASCIIFunc::FunctionFor(std::span<const DataType>) const {
  return [](Value& result, const Value& text, const Value&, const Value&) {
    const std::string_view bytes = ViewOf(text.text);
    result.bits = bytes.empty() ? 0 : static_cast<unsigned char>(bytes.front());
    return kScriptOk;
  };
}

PureFunction CONXChrFunc::FunctionFor(std::span<const DataType>) const {
  return [](Value& result, const Value& number, const Value&, const Value&) {
    SetText(result, ByteText(static_cast<unsigned char>(number.bits)));
    return kScriptOk;
  };
}
