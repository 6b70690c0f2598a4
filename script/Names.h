// Names as numbers: every spelling of a name, whatever its ASCII case, is one number within a program.
#pragma once

#include "script/DataType.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

using NameId = std::uint32_t;

// The language's own words have fixed numbers.
enum KnownName : NameId {
  kNameVar,
  kNameFunc,
  kNameIf,
  kNameElse,
  kNameWhile,
  kNameDword, // first type name
  kNameUint32,
  kNameString,
  kNameLong,
  kNameInt32,
  kNameUint64,
  kNameInt64, // last type name
  kKnownNameCount,
};

// The type that a name selects in a declaration or conversion; kNone if it selects none.
DataType TypeOfName(NameId name);

class NameTable {
public:
  NameTable();
  NameId Intern(std::string_view spelling);

private:
  std::unordered_map<std::string, NameId> m_ids; // by lower-case spelling
};
