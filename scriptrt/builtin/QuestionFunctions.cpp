#include "scriptrt/builtin/QuestionFunctions.h"

#include "script/value/NumberRange.h"
#include "scriptrt/question/Prompter.h"

#include <algorithm>

namespace {

// `confirmed` becomes a number, so it must not be a text; that is to be known before anybody is asked.
ScriptError CheckConfirmed(const SysCall& call, std::size_t index) {
  return call.Has(index) && call.VariableAt(index).GetType() == DataType::kString ? kTypeError : kScriptOk;
}

void SetConfirmed(const SysCall& call, std::size_t index, bool confirmed) {
  if (call.Has(index))
    static_cast<void>(call.VariableAt(index).SetNumber(confirmed, DataType::kUint32)); // what is no text takes it
}

// The value of the call is the answer, or what stands for none.
ScriptError Conclude(const SysCall& call, std::size_t confirmedIndex, std::optional<std::uint64_t> answer,
                     std::uint64_t otherwise, DataType type) {
  SetConfirmed(call, confirmedIndex, answer.has_value());
  return call.SetNumber(answer.value_or(otherwise), type);
}

// Each item is ended by a zero byte; text behind the last one is an item too.
std::vector<std::string> SplitItems(const std::string& text) {
  std::vector<std::string> items;
  std::size_t begin = 0;
  while (begin < text.size()) {
    const std::size_t end = std::min(text.find('\0', begin), text.size());
    items.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return items;
}

// Null: nobody answers. What the script has printed is to be seen first.
Prompter* WhoIsAsked(const RunServices& services) {
  services.output.Show();
  return services.prompter;
}

} // namespace

ScriptError CONXMessageBoxDialog::Perform(const SysCall& call) {
  if (Prompter* const asked = WhoIsAsked(Services()))
    asked->ShowMessage(std::string(call.TextAt(0)), std::string(call.TextAt(1)));
  return kScriptOk;
}

ScriptError CONXUserInputNumDialog::Perform(const SysCall& call) {
  constexpr std::size_t kConfirmed = 5;
  if (const ScriptError error = CheckConfirmed(call, kConfirmed))
    return error;
  const std::uint64_t byDefault = NarrowedTo(m_type, call.NumberAt(2));
  const std::uint64_t minimum = call.Has(3) ? NarrowedTo(m_type, call.NumberAt(3)) : LeastOf(m_type);
  const std::uint64_t maximum = call.Has(4) ? NarrowedTo(m_type, call.NumberAt(4)) : LargestOf(m_type);
  if (IsLess(m_type, maximum, minimum))
    return kSystemFunctionFailed;
  std::uint64_t initial = IsLess(m_type, maximum, byDefault) ? maximum : byDefault;
  if (IsLess(m_type, initial, minimum))
    initial = minimum;
  const Prompter::NumberQuestion question{std::string(call.TextAt(0)),
                                          std::string(call.TextAt(1)),
                                          static_cast<std::uint32_t>(m_type),
                                          initial,
                                          minimum,
                                          maximum};

  std::optional<std::uint64_t> answer;
  if (Prompter* const asked = WhoIsAsked(Services()))
    answer = asked->AskNumber(question);
  return Conclude(call, kConfirmed, answer, byDefault, m_type);
}

ScriptError CONXUserInputStringDialog::Perform(const SysCall& call) {
  constexpr std::size_t kConfirmed = 3;
  if (const ScriptError error = CheckConfirmed(call, kConfirmed))
    return error;
  const std::string byDefault = std::string(call.TextAt(2));
  std::optional<std::string> answer;
  if (Prompter* const asked = WhoIsAsked(Services()))
    answer = asked->AskText(std::string(call.TextAt(0)), std::string(call.TextAt(1)), byDefault);
  SetConfirmed(call, kConfirmed, answer.has_value());
  return call.SetText(std::move(answer).value_or(byDefault));
}

ScriptError CONXUserListInputDialog::Perform(const SysCall& call) {
  constexpr std::size_t kConfirmed = 4;
  if (const ScriptError error = CheckConfirmed(call, kConfirmed))
    return error;
  std::optional<std::uint64_t> answer;
  if (Prompter* const asked = WhoIsAsked(Services()))
    answer = asked->AskItem(std::string(call.TextAt(0)), std::string(call.TextAt(1)),
                            SplitItems(std::string(call.TextAt(2))), call.NumberAt(3));
  return Conclude(call, kConfirmed, answer, ~std::uint64_t{0}, DataType::kInt32);
}
