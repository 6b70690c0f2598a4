#include "script/Names.h"

#include <array>

namespace {

constexpr std::array<const char*, kKnownNameCount> kKnownNames = {
    "var", "func", "if", "else", "while", "dword", "uint32", "string", "long", "int32", "uint64", "int64",
};

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

DataType TypeOfName(NameId name) {
  switch (name) {
  case kNameDword:
  case kNameUint32:
    return DataType::kUint32;
  case kNameString:
    return DataType::kString;
  case kNameLong:
  case kNameInt32:
    return DataType::kInt32;
  case kNameUint64:
    return DataType::kUint64;
  case kNameInt64:
    return DataType::kInt64;
  default:
    return DataType::kNone;
  }
}

NameTable::NameTable() {
  for (const char* name : kKnownNames)
    Intern(name);
}

NameId NameTable::Intern(std::string_view spelling) {
  std::string folded(spelling);
  for (char& c : folded)
    c = Lower(c);
  return m_ids.try_emplace(std::move(folded), static_cast<NameId>(m_ids.size())).first->second;
}
