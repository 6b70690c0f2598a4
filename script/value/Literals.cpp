#include "script/value/Literals.h"

#include "script/value/NumberRange.h"
#include "util/AsciiCase.h"
#include "util/HexDigit.h"

#include <limits>

namespace {

struct Suffix {
  bool isUnsigned = false;
  char width = 0; // 'L', 'H' or none
};

// Splits the token in front of its ':'. A contradiction in the suffix is settled by its last letter.
ScriptError SplitSuffix(std::string_view token, std::string_view* digits, Suffix* suffix) {
  const std::size_t colon = token.find(':');
  *digits = token.substr(0, colon);
  if (colon == std::string_view::npos)
    return kScriptOk;
  const std::string_view letters = token.substr(colon + 1);
  if (letters.empty())
    return kSyntaxError;
  for (const char letter : letters) {
    switch (AsciiLower(letter)) {
    case 'u':
      suffix->isUnsigned = true;
      break;
    case 's':
      suffix->isUnsigned = false;
      break;
    case 'l':
      suffix->width = 'L';
      break;
    case 'h':
      suffix->width = 'H';
      break;
    default:
      return kSyntaxError;
    }
  }
  return kScriptOk;
}

// `digits` are hexadecimal ones, below the base.
std::uint64_t ReadDigits(std::string_view digits, unsigned base, std::uint64_t limit) {
  std::uint64_t value = 0;
  for (const char c : digits) {
    const unsigned digit = *HexDigitValue(c);
    if (value > (limit - digit) / base)
      return limit;
    value = value * base + digit;
  }
  return value;
}

Literal Number(DataType type, std::uint64_t value) {
  Literal literal;
  literal.type = type;
  literal.bits = NarrowedTo(type, value);
  return literal;
}

Literal Failure(ScriptError error) {
  Literal literal;
  literal.error = error;
  return literal;
}

// Hexadecimal and binary: the pattern decides the width, not the value range of a signed type.
Literal PatternLiteral(std::uint64_t value, const Suffix& suffix) {
  const bool needs64 = value > std::numeric_limits<std::uint32_t>::max();
  if (needs64 && suffix.width == 'L')
    return Failure(kSyntaxError);
  return Number(NumericType(needs64 || suffix.width == 'H', !suffix.isUnsigned), value);
}

} // namespace

Literal DecimalLiteral(std::string_view token) {
  std::string_view digits;
  Suffix suffix;
  if (const ScriptError error = SplitSuffix(token, &digits, &suffix); error != kScriptOk)
    return Failure(error);
  const std::uint64_t limit = suffix.isUnsigned ? std::numeric_limits<std::uint64_t>::max()
                                                : static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  const std::uint64_t value = ReadDigits(digits, 10, limit);
  const bool needs64 = suffix.isUnsigned ? value > std::numeric_limits<std::uint32_t>::max()
                                         : value > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max());
  if (needs64 && suffix.width == 'L')
    return Failure(kSyntaxError);
  return Number(NumericType(needs64, !suffix.isUnsigned), value); // H does not widen a decimal
}

Literal HexadecimalLiteral(std::string_view token) {
  std::string_view digits;
  Suffix suffix;
  if (const ScriptError error = SplitSuffix(token, &digits, &suffix); error != kScriptOk)
    return Failure(error);
  return PatternLiteral(ReadDigits(digits, 16, std::numeric_limits<std::uint64_t>::max()), suffix);
}

Literal BinaryLiteral(std::string_view token) {
  std::string_view digits;
  Suffix suffix;
  if (const ScriptError error = SplitSuffix(token, &digits, &suffix); error != kScriptOk)
    return Failure(error);
  if (digits.size() > 64)
    return Failure(kTypeError);
  return PatternLiteral(ReadDigits(digits, 2, std::numeric_limits<std::uint64_t>::max()), suffix);
}
