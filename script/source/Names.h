// Names as numbers: every spelling of a name, whatever its ASCII case, is one number within a program.
#pragma once

#include "script/value/DataType.h"

#include <cstdint>
#include <string_view>
#include <vector>

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

// A hash table with linear probing. Spellings are kept where they stand, which must outlive the table.
class NameTable {
public:
  NameTable();
  NameId Intern(std::string_view spelling);
  // As it was first written.
  std::string_view SpellingOf(NameId name) const { return m_spellings[name]; }
  std::size_t Count() const { return m_spellings.size(); }

private:
  void Grow();

  std::vector<std::string_view> m_spellings; // by number
  std::vector<std::uint32_t> m_hashes;       // the same
  std::vector<std::uint32_t> m_places;       // number plus 1, 0 where nothing is; a power of two, at most half full
};
