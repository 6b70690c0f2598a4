#include "scriptrt/NumberAnswer.h"

#include "scriptrt/NumberText.h"
#include "util/ScanNumber.h"

namespace {

DataType TypeOf(const CONXOperator::NumberQuestion& question) {
  return static_cast<DataType>(question.type);
}

// 32-bit types take the low half of what was read.
std::uint64_t Narrowed(std::uint64_t bits, DataType type) {
  if (Is64Bit(type))
    return bits;
  return IsSigned(type) ? static_cast<std::uint64_t>(static_cast<std::int32_t>(bits))
                        : static_cast<std::uint32_t>(bits);
}

bool Less(std::uint64_t left, std::uint64_t right, DataType type) {
  return IsSigned(type) ? static_cast<std::int64_t>(left) < static_cast<std::int64_t>(right) : left < right;
}

} // namespace

std::string NumberForOperator(const CONXOperator::NumberQuestion& question, std::uint64_t value) {
  return DecimalText(value, TypeOf(question));
}

NumberAnswer ReadNumberAnswer(const CONXOperator::NumberQuestion& question, const std::string& text) {
  const DataType type = TypeOf(question);
  const auto read = ScanNumber(text, IsSigned(type) ? NumberFormat::kSigned : NumberFormat::kUnsigned);
  if (!read)
    return {};
  const std::uint64_t value = Narrowed(*read, type);
  if (Less(value, question.minimum, type))
    return {std::nullopt, "Value must be >= " + DecimalText(question.minimum, type)};
  if (Less(question.maximum, value, type))
    return {std::nullopt, "Value must be <= " + DecimalText(question.maximum, type)};
  return {value, {}};
}
