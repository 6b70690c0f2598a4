#include "host/channel/sim/StoreFolder.h"

#include "host/support/Files.h"
#include "host/support/Text.h"

#include <cstdio>

namespace host {
namespace {

struct FileName {
  std::uint8_t id;
  std::uint8_t type;
};

std::string NameOf(FileName name) {
  char text[32];
  std::snprintf(text, sizeof text, "%03u-type%u.bin", static_cast<unsigned>(name.id), static_cast<unsigned>(name.type));
  return text;
}

// Only the exact spelling counts, so that no two names of a folder mean the same file.
std::optional<FileName> ParseName(const std::string& text) {
  constexpr std::string_view kMiddle = "-type";
  constexpr std::string_view kEnd = ".bin";
  if (text.size() <= 3 + kMiddle.size() + kEnd.size() || !text.ends_with(kEnd))
    return std::nullopt;
  const std::string_view all = text;
  const std::size_t typeAt = 3 + kMiddle.size();
  FileName name{};
  if (!ParseNumber(all.substr(0, 3), name.id) ||
      !ParseNumber(all.substr(typeAt, all.size() - typeAt - kEnd.size()), name.type) || NameOf(name) != text)
    return std::nullopt;
  return name;
}

} // namespace

std::optional<StoreFolder> StoreFolder::Open(const std::string& path) {
  if (!MakeFolder(path) || !ListFolder(path))
    return std::nullopt;
  return StoreFolder(path);
}

std::vector<StoreFolder::Entry> StoreFolder::Load(std::uint64_t largest) const {
  std::vector<Entry> entries;
  const auto names = ListFolder(m_path);
  if (!names)
    return entries;
  for (const std::string& text : *names) { // sorted, so the ids ascend
    const auto name = ParseName(text);
    if (!name || (!entries.empty() && entries.back().id == name->id))
      continue;
    if (ReadResult bytes = ReadWholeFile(PathInFolder(m_path, text), largest))
      entries.push_back({name->id, name->type, std::move(*bytes)});
  }
  return entries;
}

bool StoreFolder::Save(std::uint8_t id, std::uint8_t type, const std::string& bytes) const {
  const std::string name = NameOf({id, type});
  return WriteWholeFile(PathInFolder(m_path, name), bytes) && RemoveOthers(id, name);
}

bool StoreFolder::Remove(std::uint8_t id) const {
  return RemoveOthers(id, {});
}

bool StoreFolder::RemoveOthers(std::uint8_t id, const std::string& kept) const {
  const auto names = ListFolder(m_path);
  if (!names)
    return false;
  bool removed = true;
  for (const std::string& text : *names) {
    const auto name = ParseName(text);
    const std::string path = PathInFolder(m_path, text);
    if (name && name->id == id && text != kept && IsRegularFile(path)) // nothing else is the device's
      removed = RemoveLocalFile(path) && removed;
  }
  return removed;
}

} // namespace host
