#include "util/ScriptFile.h"

#include "platform/Platform.h"
#include "util/LastSeparator.h"

namespace {

constexpr std::uint64_t kLongestScript = 0xFFFFFFFF; // places in it are 32 bits wide

} // namespace

ScriptFileResult ReadScriptFile(const std::string& fullPath, std::string* text) {
  std::optional<platform::File> file = platform::File::Open(fullPath, platform::File::Mode::kRead);
  if (!file)
    return ScriptFileResult::kCannotOpen;
  const std::optional<std::uint64_t> size = file->Size();
  if (!size)
    return ScriptFileResult::kCannotRead;
  if (*size > kLongestScript)
    return ScriptFileResult::kTooLong;
  *text = *size == 0 ? file->ReadToEnd(kLongestScript + 1) : file->ReadText(*size);
  if (text->size() > kLongestScript)
    return ScriptFileResult::kTooLong;
  return text->size() >= *size && file->Close() ? ScriptFileResult::kRead : ScriptFileResult::kCannotRead;
}

std::string FolderOfScript(const std::string& fullPath) {
  const std::size_t separator = LastSeparator(fullPath);
  return separator == std::string::npos ? std::string() : fullPath.substr(0, separator);
}
