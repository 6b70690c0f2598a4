#include "util/Path.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <utility>

namespace {

constexpr char kSeparator = '\\';

// Resolves the steps ".\" and "..\" of a joined path.
//
// The rule is: look for the first step from the start of the text, remove what it names, and begin again from the start
// until none is left. A removal leaves no step in front of it, so that one pass does the same, as long as it knows how
// many dots stand in front of each place: `m_dots` keeps that count beside each byte of the text cleaned so far. One
// dot and a backslash are a "." step, two are a ".." step; a third dot starts the count again. The dots may follow a
// name: "a.\" is a step.
class PathCleaner {
public:
  // Nothing when a ".." climbs above the start.
  std::optional<std::string> Clean(const std::string& joined) {
    m_text.reserve(joined.size());
    m_dots.reserve(joined.size());
    for (const char c : joined) {
      if (!Add(c))
        return std::nullopt;
    }
    return std::move(m_text);
  }

private:
  // False when the path climbs above the start.
  bool Add(char c) {
    while (c == kSeparator && Dots() == 1)
      StepInPlace();
    if (c == kSeparator && Dots() == 2 && !StepUp())
      return false;
    Append(c);
    return true;
  }

  int Dots() const { return m_dots.empty() ? 0 : m_dots.back(); }

  void Append(char c) {
    m_dots.push_back(c == '.' ? static_cast<char>((Dots() + 1) % 3) : '\0');
    m_text.push_back(c);
  }

  void CutAt(std::size_t length) {
    m_text.resize(length);
    m_dots.resize(length);
  }

  // A "." step, whose backslash is about to be added. It takes away the two bytes in front of its dot, not the dot and
  // the backslash: "C:\a\.\b" becomes "C:\.\b", that "C.\b", and there the text has no two bytes left. Callers have
  // always been told so by this exception, and keep the path as it was written.
  void StepInPlace() {
    if (m_text.size() < 3)
      throw std::out_of_range("invalid string position");
    CutAt(m_text.size() - 3);
    Append('.');
  }

  // A ".." step, whose backslash is about to be added: removes the name in front of it, from that name's own backslash
  // on.
  bool StepUp() {
    const std::size_t step = m_text.size();
    if (step < 4)
      return false;
    std::size_t parent = step - 4;
    while (parent > 0 && m_text[parent] != kSeparator)
      --parent;
    const bool isDrive = parent == 0 && step == 5 && m_text[1] == ':' && m_text[2] == kSeparator;
    if (isDrive)
      return false;
    CutAt(parent);
    return true;
  }

  std::string m_text;
  std::string m_dots;
};

bool HasStep(const std::string& path) {
  return path.find(".\\") != std::string::npos;
}

// How many bytes two paths share, without regard to case.
std::size_t CommonLength(const std::string& a, const std::string& b) {
  const auto same = [](char x, char y) { return toUpperGer(x) == toUpperGer(y); };
  return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end(), same).first - a.begin());
}

// The last backslash at or before `from`, 0 when there is none. Index 0 itself is not looked at.
std::size_t SeparatorAtOrBefore(const std::string& path, std::size_t from) {
  const std::size_t found = path.rfind(kSeparator, from);
  return found == std::string::npos ? 0 : found;
}

} // namespace

char toUpperGer(char c) {
  switch (static_cast<unsigned char>(c)) {
  case 0xE4: // ä, ö, ü
  case 0xF6:
  case 0xFC:
    return static_cast<char>(c - 0x20);
  default:
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  }
}

int IsAbsolutePath(const std::string& path) {
  return path.size() >= 2 && (path[1] == ':' || path.starts_with("\\\\")) ? 1 : 0;
}

void SplitFileName(const std::string& path, std::string* folder, std::string* file) {
  const std::size_t separator = path.empty() ? 0 : SeparatorAtOrBefore(path, path.size() - 1);
  std::string folderPart = path.substr(0, separator);
  std::string filePart = path.substr(separator == 0 ? 0 : separator + 1);
  // A path that ends with its separator names no file: what the caller had stays.
  if (file && (separator == 0 || !filePart.empty()))
    *file = std::move(filePart);
  if (folder)
    *folder = std::move(folderPart);
}

int ConcatenatePathAndFile(const std::string& folder, const std::string& file, std::string* result) {
  if (folder.empty()) {
    *result = file;
    return 1;
  }
  std::string joined;
  joined.reserve(folder.size() + 1 + file.size());
  joined = folder;
  if (!joined.ends_with(kSeparator))
    joined.push_back(kSeparator);
  joined += file;
  if (!HasStep(joined)) {
    *result = std::move(joined);
    return 1;
  }
  std::optional<std::string> cleaned = PathCleaner().Clean(joined);
  *result = cleaned ? std::move(*cleaned) : std::string(file);
  return cleaned ? 1 : 0;
}

void MakeRelativePath(const std::string& baseFolder, const std::string& path, std::string* result) {
  std::size_t shared = CommonLength(baseFolder, path);
  const bool baseIsShared = shared == baseFolder.size();
  if (shared > 0 && !baseIsShared)
    shared = SeparatorAtOrBefore(baseFolder, shared);
  if (shared == 0) {
    *result = path;
    return;
  }
  std::string relative;
  if (shared < baseFolder.size() && shared < path.size()) {
    const auto levels =
        std::count(baseFolder.begin() + static_cast<std::ptrdiff_t>(shared), baseFolder.end(), kSeparator);
    for (auto level = levels; level > 0; --level)
      relative += "..\\";
  }
  if (shared < path.size())
    relative.append(path, shared + 1, std::string::npos);
  *result = std::move(relative);
}
