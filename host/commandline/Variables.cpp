#include "host/commandline/Variables.h"

#include "host/support/Text.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <optional>
#include <string_view>

namespace host {
namespace {

struct TypeName {
  std::string_view name;
  std::uint32_t type;
};
constexpr TypeName kTypes[] = {
    {"dword", ONX_TYPE_UINT32}, {"uint32", ONX_TYPE_UINT32}, {"string", ONX_TYPE_STRING}, {"int32", ONX_TYPE_INT32},
    {"long", ONX_TYPE_INT32},   {"uint64", ONX_TYPE_UINT64}, {"int64", ONX_TYPE_INT64},
};

// Magnitudes that a numeric type can hold below and above zero.
struct Range {
  std::uint64_t below;
  std::uint64_t above;
};

Range RangeOf(std::uint32_t type) {
  switch (type) {
  case ONX_TYPE_INT32:
    return {0x80000000U, 0x7FFFFFFFU};
  case ONX_TYPE_INT64:
    return {0x8000000000000000U, 0x7FFFFFFFFFFFFFFFU};
  case ONX_TYPE_UINT64:
    return {0, 0xFFFFFFFFFFFFFFFFU};
  default:
    return {0, 0xFFFFFFFFU};
  }
}

bool IsIdentifier(std::string_view name) {
  const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; };
  const auto isInside = [&](char c) { return isLetter(c) || (c >= '0' && c <= '9'); };
  return !name.empty() && isLetter(name.front()) && std::all_of(name.begin(), name.end(), isInside);
}

// Words that begin statements: a script could not reach a variable of that name.
bool IsKeyword(std::string_view name) {
  constexpr std::string_view kKeywords[] = {"var", "func", "if", "else", "while"};
  return std::any_of(std::begin(kKeywords), std::end(kKeywords),
                     [&](std::string_view word) { return EqualIgnoringCase(name, word); });
}

std::optional<std::uint32_t> FindType(std::string_view name) {
  for (const TypeName& known : kTypes) {
    if (EqualIgnoringCase(name, known.name))
      return known.type;
  }
  return std::nullopt;
}

std::string UnknownType(std::string_view name) {
  return "unknown type " + Quoted(name) + "; there are " + VariableTypes();
}

std::string OutOfRange(std::string_view text, const Range& range) {
  return std::string(text) + " is not within " + (range.below != 0 ? "-" : "") + std::to_string(range.below) + " to " +
         std::to_string(range.above);
}

// The digits without the prefix that tells their base.
int TakeBase(std::string_view& digits) {
  const auto begins = [&](std::string_view prefix) { return EqualIgnoringCase(digits.substr(0, 2), prefix); };
  const int base = begins("0x") ? 16 : begins("0b") ? 2 : 10;
  if (base != 10)
    digits.remove_prefix(2);
  return base;
}

tl::expected<std::uint64_t, std::string> ParseValue(std::string_view text, std::uint32_t type) {
  std::string_view digits = text;
  const bool negative = digits.starts_with('-');
  if (negative || digits.starts_with('+'))
    digits.remove_prefix(1);
  const int base = TakeBase(digits);

  std::uint64_t magnitude = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, status] = std::from_chars(digits.data(), end, magnitude, base);
  if (status == std::errc::invalid_argument || stop != end)
    return tl::unexpected(Quoted(text) + " is not a number");
  const Range range = RangeOf(type);
  if (status == std::errc::result_out_of_range || magnitude > (negative ? range.below : range.above))
    return tl::unexpected(OutOfRange(text, range));
  return negative ? 0 - magnitude : magnitude;
}

std::string Escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    char code[8];
    switch (c) {
    case '\n':
      result += "\\n";
      break;
    case '\r':
      result += "\\r";
      break;
    case '\t':
      result += "\\t";
      break;
    case '\\':
      result += "\\\\";
      break;
    default:
      if (static_cast<unsigned char>(c) >= ' ' && c != 0x7F) {
        result += c;
        break;
      }
      std::snprintf(code, sizeof code, "\\(x%02X)", static_cast<unsigned>(c));
      result += code;
    }
  }
  return result;
}

} // namespace

std::string VariableTypes() {
  std::string names;
  for (const TypeName& known : kTypes)
    names.append(names.empty() ? "" : ", ").append(known.name);
  return names;
}

std::string_view NameOfType(std::uint32_t type) {
  for (const TypeName& known : kTypes)
    if (known.type == type)
      return known.name;
  return "dword";
}

tl::expected<Variable, std::string> DeclareVariable(std::string_view name, std::string_view typeName) {
  if (!IsIdentifier(name))
    return tl::unexpected(Quoted(name) + " is not a variable's name (letters, digits and _, no digit in front)");
  if (IsKeyword(name))
    return tl::unexpected(Quoted(name) + " is a word of the language, not a variable's name");
  const auto type = FindType(typeName);
  if (!type)
    return tl::unexpected(UnknownType(typeName));
  Variable variable;
  variable.name = name;
  variable.type = *type;
  return variable;
}

tl::expected<Variable, std::string> ParseVariable(const std::string& text) {
  const std::string_view all = text;
  const std::size_t equals = all.find('=');
  const std::size_t colon = all.substr(0, equals).find(':');
  if (equals == std::string_view::npos || colon == std::string_view::npos)
    return tl::unexpected<std::string>("expected NAME:TYPE=VALUE, as in count:dword=5");
  auto variable = DeclareVariable(all.substr(0, colon), all.substr(colon + 1, equals - colon - 1));
  if (!variable)
    return variable;
  const std::string_view value = all.substr(equals + 1);
  if (variable->type == ONX_TYPE_STRING) {
    variable->text = value;
    return variable;
  }
  return ParseValue(value, variable->type).map([&](std::uint64_t number) {
    variable->number = number;
    return *variable;
  });
}

std::vector<TONXSCRIPTVARIABLE> RecordsToSet(const std::vector<Variable>& variables) {
  std::vector<TONXSCRIPTVARIABLE> records;
  for (const Variable& variable : variables) {
    TONXSCRIPTVARIABLE record{};
    record.name = variable.name.c_str();
    record.type = variable.type;
    const void* value = &variable.number;
    if (variable.type == ONX_TYPE_STRING) {
      value = variable.text.data();
      record.length = variable.text.size();
    }
    record.value = reinterpret_cast<std::uintptr_t>(value);
    records.push_back(record);
  }
  return records;
}

TONXSCRIPTVARIABLE RecordToGet(const std::string& name) {
  TONXSCRIPTVARIABLE record{};
  record.name = name.c_str();
  return record;
}

std::string FormatValue(const TONXSCRIPTVARIABLE& record) {
  switch (record.type) {
  case ONX_TYPE_STRING:
    return Escaped({reinterpret_cast<const char*>(static_cast<std::uintptr_t>(record.value)),
                    static_cast<std::size_t>(record.length)});
  case ONX_TYPE_INT32:
    return std::to_string(static_cast<std::int32_t>(record.value));
  case ONX_TYPE_UINT64:
    return std::to_string(record.value);
  case ONX_TYPE_INT64:
    return std::to_string(static_cast<std::int64_t>(record.value));
  default:
    return std::to_string(static_cast<std::uint32_t>(record.value));
  }
}

} // namespace host
