#include "util/ScriptFile.h"

#include "platform/Platform.h"
#include "util/LastSeparator.h"

ScriptFileResult ReadScriptFile(const std::string& fullPath, std::string* text) {
  std::optional<platform::File> file = platform::File::Open(fullPath, platform::File::Mode::kRead);
  if (!file)
    return ScriptFileResult::kCannotOpen;
  const std::optional<std::uint64_t> size = file->Size();
  if (!size)
    return ScriptFileResult::kCannotRead;
  *text = file->ReadText(*size);
  return text->size() == *size ? ScriptFileResult::kRead : ScriptFileResult::kCannotRead;
}

std::string FolderOfScript(const std::string& fullPath) {
  const std::size_t separator = LastSeparator(fullPath);
  return separator == std::string::npos ? std::string() : fullPath.substr(0, separator);
}
