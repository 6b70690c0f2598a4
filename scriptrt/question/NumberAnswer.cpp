#include "scriptrt/question/NumberAnswer.h"

#include "script/value/NumberRange.h"
#include "script/value/NumberText.h"
#include "util/ScanNumber.h"

namespace {

DataType TypeOf(const CONXOperator::NumberQuestion& question) {
  return static_cast<DataType>(question.type);
}

} // namespace

std::string NumberForOperator(const CONXOperator::NumberQuestion& question, std::uint64_t value) {
  return DecimalText(value, TypeOf(question));
}

std::string LimitsForOperator(const CONXOperator::NumberQuestion& question) {
  const DataType type = TypeOf(question);
  if (question.minimum == LeastOf(type) && question.maximum == LargestOf(type))
    return {};
  return NumberForOperator(question, question.minimum) + " to " + NumberForOperator(question, question.maximum);
}

NumberAnswer ReadNumberAnswer(const CONXOperator::NumberQuestion& question, const std::string& text) {
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
