#include "filemanager/LocalFileRow.h"

#include "util/AsciiCase.h"
#include "util/FileMode.h"
#include "util/ScanNumber.h"

namespace {

constexpr std::string_view kProgramExtension = ".rbf";
constexpr std::uint8_t kDefaultId = 0;
constexpr std::uint8_t kDefaultType = 1;

std::uint8_t ByteOf(const std::string& text, std::uint8_t otherwise) {
  return static_cast<std::uint8_t>(ScanNumber(text, NumberFormat::kUnsigned).value_or(otherwise));
}

// A path too short for an extension has no mode, which reads as normal.
std::string DefaultModeOf(const std::string& path) {
  if (path.size() < kProgramExtension.size()) {
    return {};
  }
  const std::string_view extension = std::string_view(path).substr(path.size() - kProgramExtension.size());
  return FileModeWord(EqualsIgnoringCase(extension, kProgramExtension) ? OND_FILE_PROGRAM : OND_FILE_NORMAL);
}

} // namespace

TLOCALFILEROW RowOf(const TFILEENTRY& entry) {
  return {entry.path, std::to_string(entry.fileId), std::to_string(entry.fileType), FileModeWord(entry.fileMode)};
}

TLOCALFILEROW DefaultRowOf(const std::string& path) {
  return {path, std::to_string(kDefaultId), std::to_string(kDefaultType), DefaultModeOf(path)};
}

TFILEENTRY EntryOf(const TLOCALFILEROW& row) {
  TFILEENTRY entry;
  entry.path = row.path;
  entry.fileId = ByteOf(row.fileId, kDefaultId);
  entry.fileType = ByteOf(row.fileType, kDefaultType);
  entry.fileMode = FileModeOf(row.fileMode);
  return entry;
}
