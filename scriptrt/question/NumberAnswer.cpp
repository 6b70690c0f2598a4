#include "scriptrt/question/NumberAnswer.h"

#include "script/value/NumberRange.h"
#include "script/value/NumberText.h"
#include "util/ScanNumber.h"

namespace {

DataType TypeOf(const Prompter::NumberQuestion& question) {
  return static_cast<DataType>(question.type);
}

} // namespace

std::string NumberForPrompt(const Prompter::NumberQuestion& question, std::uint64_t value) {
  return DecimalText(value, TypeOf(question));
}

std::string LimitsForPrompt(const Prompter::NumberQuestion& question) {
  const DataType type = TypeOf(question);
  if (question.minimum == LeastOf(type) && question.maximum == LargestOf(type))
    return {};
  return NumberForPrompt(question, question.minimum) + " to " + NumberForPrompt(question, question.maximum);
}

NumberAnswer ReadNumberAnswer(const Prompter::NumberQuestion& question, const std::string& text) {
  const DataType type = TypeOf(question);
  const auto read = ScanNumber(text, IsSigned(type) ? NumberFormat::kSigned : NumberFormat::kUnsigned);
  if (!read)
    return {};
  const std::uint64_t value = NarrowedTo(type, *read);
  if (IsLess(type, value, question.minimum))
    return {std::nullopt, "Value must be >= " + DecimalText(question.minimum, type)};
  if (IsLess(type, question.maximum, value))
    return {std::nullopt, "Value must be <= " + DecimalText(question.maximum, type)};
  return {value, {}};
}
