#include "scriptrt/builtin/StringFunctions.h"

#include "script/NumberText.h"

namespace {

// Output is zero-terminated text, so a zero byte shows as the two characters \0.
std::string WithVisibleZeros(const std::string& bytes) {
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

} // namespace

ScriptError CONXPrintFunc::Perform(const SysCall& call) {
  if (!Services().output)
    return kScriptOk;
  for (const ScriptArgument& argument : call.arguments) {
    const DataType type = argument.variable.GetType(); // a function counts as untyped
    if (IsNumeric(type))
      Write(DecimalText(argument.variable.GetNumber(), type).c_str());
    else if (type == DataType::kString && argument.variable.GetText().find('\0') == std::string::npos)
      Write(argument.variable.GetText().c_str());
    else if (type == DataType::kString)
      Write(WithVisibleZeros(argument.variable.GetText()).c_str());
  }
  return kScriptOk;
}

ScriptError CONXStrlenFunc::Compute(const SysCall& call) {
  return call.SetNumber(call.TextAt(0).Size(), DataType::kUint32);
}

ScriptError CONXSubStrFunc::Compute(const SysCall& call) {
  const std::string& text = call.TextAt(0).Bytes();
  const std::uint64_t start = call.NumberAt(1);
  if (start >= text.size())
    return call.SetText({});
  return call.SetText(text.substr(start, call.NumberAtOr(2, std::string::npos)));
}

ScriptError CONXInstrFunc::Compute(const SysCall& call) {
  // "Not found" is all ones, which is -1 as int32.
  return call.SetNumber(call.TextAt(0).Bytes().find(call.TextAt(1).Bytes(), call.NumberAtOr(2, 0)), DataType::kInt32);
}

ScriptError CONXASCIIFunc::Compute(const SysCall& call) {
  const std::string& text = call.TextAt(0).Bytes();
  return call.SetNumber(text.empty() ? 0 : static_cast<unsigned char>(text.front()), DataType::kUint32);
}

ScriptError CONXChrFunc::Compute(const SysCall& call) {
  return call.SetText(std::string(1, static_cast<char>(call.NumberAt(0))));
}
