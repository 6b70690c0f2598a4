#include "scriptrt/builtin/FileFunctions.h"

#include "platform/Platform.h"

#include <algorithm>
#include <limits>

namespace {

using platform::File;

constexpr std::uint64_t kTooLong = SharedText::kMaxSize + 1;              // a text of this size is refused
constexpr std::uint32_t kAll = std::numeric_limits<std::uint32_t>::max(); // as an offset: none

std::uint32_t Number32(const SysCall& call, std::size_t index, std::uint32_t otherwise) {
  return static_cast<std::uint32_t>(call.NumberAtOr(index, otherwise));
}

std::optional<File> OpenToWrite(const std::string& path, std::uint32_t offset) {
  if (offset == kAll)
    return File::Open(path, File::Mode::kCreate);
  std::optional<File> file = File::Open(path, File::Mode::kUpdate);
  return file && file->Seek(offset) ? std::move(file) : std::nullopt;
}

} // namespace

ScriptError CONXWriteStringToFileFunc::Perform(const SysCall& call) {
  const std::string_view text = call.TextAt(1);
  const std::uint32_t offset = Number32(call, 2, kAll);
  const std::size_t start = std::min<std::size_t>(Number32(call, 3, 0), text.size());
  const std::size_t count = std::min<std::size_t>(Number32(call, 4, kAll), text.size() - start);
  std::optional<File> file = OpenToWrite(call.PathAt(0), offset);
  return call.SetNumber(file ? file->Write(text.data() + start, count) : 0, DataType::kUint32);
}

ScriptError CONXReadStringFromFileFunc::Compute(const SysCall& call) {
  std::optional<File> file = File::Open(call.PathAt(0), File::Mode::kRead);
  const std::uint64_t size = file ? file->Size().value_or(0) : 0;
  const std::uint64_t offset = Number32(call, 1, 0);
  const std::uint64_t length = Number32(call, 2, kAll);
  if (file && size == 0) // or the system makes the bytes when they are read, and does not know how many
    return call.SetText(file->Seek(offset) ? file->ReadToEnd(std::min<std::uint64_t>(length, kTooLong))
                                           : std::string());
  if (offset >= size || !file->Seek(offset))
    return call.SetText({});
  const std::uint64_t count = std::min(length, size - offset);
  if (count > SharedText::kMaxSize)
    return kOutOfMemory;
  return call.SetText(file->ReadText(count));
}

ScriptError CONXGetFileSizeFunc::Compute(const SysCall& call) {
  std::optional<File> file = File::Open(call.PathAt(0), File::Mode::kRead);
  return call.SetNumber(file ? file->Size().value_or(0) : 0, DataType::kUint32);
}

ScriptError CONXGetBasePathFunc::Compute(const SysCall& call) {
  return call.SetText(call.context.BaseDirectory());
}
