#include "script/source/Names.h"

#include "util/AsciiCase.h"

#include <array>

namespace {

constexpr std::array<const char*, kKnownNameCount> kKnownNames = {
    "var", "func", "if", "else", "while", "dword", "uint32", "string", "long", "int32", "uint64", "int64",
};

// FNV-1a with a last stir, since the low bits choose the place.
std::uint32_t HashOf(std::string_view spelling) {
  std::uint32_t hash = 2166136261U;
  for (const char c : spelling)
    hash = (hash ^ static_cast<unsigned char>(AsciiLower(c))) * 16777619U;
  return hash ^ hash >> 15;
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

NameTable::NameTable() : m_places(256) {
  m_spellings.reserve(m_places.size() / 2);
  m_hashes.reserve(m_places.size() / 2);
  for (const char* name : kKnownNames)
    Intern(name);
}

NameId NameTable::Intern(std::string_view spelling) {
  const std::uint32_t hash = HashOf(spelling);
  const std::size_t mask = m_places.size() - 1;
  std::size_t place = hash & mask;
  for (; m_places[place] != 0; place = (place + 1) & mask) {
    const NameId name = m_places[place] - 1;
    if (m_hashes[name] == hash && EqualsIgnoringCase(m_spellings[name], spelling))
      return name;
  }
  const auto name = static_cast<NameId>(m_spellings.size());
  m_spellings.push_back(spelling);
  m_hashes.push_back(hash);
  m_places[place] = name + 1;
  if (m_spellings.size() * 2 > m_places.size())
    Grow();
  return name;
}

void NameTable::Grow() {
  std::vector<std::uint32_t> places(m_places.size() * 2);
  const std::size_t mask = places.size() - 1;
  for (NameId name = 0; name < m_spellings.size(); ++name) {
    std::size_t place = m_hashes[name] & mask;
    while (places[place] != 0)
      place = (place + 1) & mask;
    places[place] = name + 1;
  }
  m_places = std::move(places);
}
