#include "util/JobFile.h"

#include "platform/Platform.h"
#include "util/FileMode.h"
#include "util/Path.h"
#include "util/ScanNumber.h"

#include <algorithm>
#include <new>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace {

// 0 for text that is no number; only the low 8 bits count.
std::uint8_t ByteOf(const std::string& text) {
  return static_cast<std::uint8_t>(ScanNumber(text, NumberFormat::kUnsigned).value_or(0));
}

// Where the path cannot be joined to the folder it stays as written.
std::string PathOf(const std::string& text, const std::string& baseFolder) {
  if (IsAbsolutePath(text))
    return text;
  std::string path;
  try {
    ConcatenatePathAndFile(baseFolder, text, &path);
  } catch (const std::out_of_range&) {
    return text;
  }
  return path;
}

void StoreField(std::size_t column, const std::string& text, const std::string& baseFolder, TFILEENTRY* entry) {
  switch (column) {
  case 0:
    entry->path = PathOf(text, baseFolder);
    break;
  case 1:
    entry->fileId = ByteOf(text);
    break;
  case 2:
    entry->fileType = ByteOf(text);
    break;
  case 3:
    entry->fileMode = FileModeOf(text);
    break;
  default:
    break;
  }
}

bool EndsField(char c) {
  return c == '\t' || c == '\n' || c == '\r';
}

// Takes a job file's bytes in pieces of any size and collects its entries.
class JobFileReader {
public:
  explicit JobFileReader(std::string folder) : m_folder(std::move(folder)) { m_entry.fileType = 1; }

  void Read(std::string_view piece) {
    while (!piece.empty()) {
      const auto end = static_cast<std::size_t>(std::find_if(piece.begin(), piece.end(), EndsField) - piece.begin());
      m_field.append(piece.substr(0, end));
      if (end < piece.size())
        EndField(piece[end]);
      piece.remove_prefix(std::min(end + 1, piece.size()));
    }
  }

  // A last line without its end still counts, but not the field that it was in the middle of.
  std::vector<TFILEENTRY> Finish() {
    if (m_column != 0)
      m_entries.push_back(std::move(m_entry));
    return std::move(m_entries);
  }

private:
  void EndField(char delimiter) {
    StoreField(m_column, m_field, m_folder, &m_entry);
    m_field.clear();
    if (delimiter == '\t') {
      ++m_column;
    } else {
      EndLine();
    }
  }

  // A line without a tab is no entry. Where the line gives no type, the first entry's is 1 and that of later ones 0.
  void EndLine() {
    if (m_column != 0) {
      m_entries.push_back(std::move(m_entry));
      m_entry = TFILEENTRY();
    }
    m_column = 0;
  }

  std::string m_folder;
  std::vector<TFILEENTRY> m_entries;
  TFILEENTRY m_entry; // of the line that is being read
  std::string m_field;
  std::size_t m_column = 0;
};

std::string FolderOf(const std::string& path) {
  std::string folder;
  SplitFileName(path, &folder, nullptr);
  return folder;
}

// Nothing when the file cannot be opened or read to its end.
std::optional<std::vector<TFILEENTRY>> ReadEntries(const std::string& jobPath) {
  std::optional<platform::File> file = platform::File::Open(jobPath, platform::File::Mode::kRead);
  if (!file)
    return std::nullopt;
  JobFileReader reader(FolderOf(jobPath));
  std::vector<char> buffer(65536); // not on the stack: scripts load job files where little of it may be left
  while (const std::size_t count = file->Read(buffer.data(), buffer.size()))
    reader.Read({buffer.data(), count});
  return file->Close() ? std::optional(reader.Finish()) : std::nullopt;
}

bool SamePath(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return toUpperGer(x) == toUpperGer(y); });
}

// Relative to the folder, unless that would not lead back: a folder whose name only begins like this one ("jobs2"
// beside "jobs"), or a name that the rules for joining take for a step.
std::string WrittenPath(const std::string& path, const std::string& folder) {
  std::string relative;
  MakeRelativePath(folder, path, &relative);
  return SamePath(PathOf(relative, folder), path) ? relative : path;
}

std::string LineOf(const TFILEENTRY& entry, const std::string& folder) {
  std::string line = WrittenPath(entry.path, folder);
  line.append("\t").append(std::to_string(entry.fileId));
  line.append("\t").append(std::to_string(entry.fileType));
  line.append("\t").append(FileModeWord(entry.fileMode)).append("\n");
  return line;
}

bool WriteEntries(const std::string& jobPath, const std::vector<TFILEENTRY>& entries) {
  const std::string folder = FolderOf(jobPath);
  std::string text;
  for (const TFILEENTRY& entry : entries)
    text += LineOf(entry, folder);
  return platform::WriteWholeFile(jobPath, text);
}

} // namespace

void FillEntry(std::size_t column, std::string* text, TFILEENTRY* entry, std::string& baseFolder) {
  try {
    StoreField(column, *text, baseFolder, entry);
  } catch (const std::bad_alloc&) {
    // No memory for a longer path: the entry keeps the one it had.
  }
}

int LoadJobFile(const char* jobPath, std::vector<TFILEENTRY>* list) {
  try {
    std::optional<std::vector<TFILEENTRY>> entries = ReadEntries(jobPath);
    if (entries)
      list->swap(*entries);
    return entries ? 1 : 0;
  } catch (...) { // no memory, or no path at all
    return 0;
  }
}

int SaveJobFile(const char* jobPath, std::vector<TFILEENTRY>* list) {
  try {
    return WriteEntries(jobPath, *list) ? 1 : 0;
  } catch (...) {
    return 0;
  }
}
