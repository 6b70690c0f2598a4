#include "host/support/Files.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <utility>

namespace host {
namespace {

struct Closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, Closer>;

// Under a name that nobody has, whoever has left something there before. `beside` is its path.
OpenFile CreateBeside(const std::string& path, std::string& beside) {
  OpenFile file;
  unsigned number = 0;
  do {
    beside = path + ".new" + (number == 0 ? std::string() : std::to_string(number));
    file.reset(CreateNewFile(beside));
    ++number;
  } while (!file && errno == EEXIST);
  return file;
}

bool WriteAndClose(OpenFile file, const std::string& bytes) {
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
  // Closing is where a full disk may show.
  return std::fclose(file.release()) == 0 && written;
}

} // namespace

ReadResult ReadToEnd(std::FILE* file, std::uint64_t limit) {
  std::string bytes;
  std::array<char, 65536> chunk;
  while (const std::size_t count = std::fread(chunk.data(), 1, chunk.size(), file)) {
    bytes.append(chunk.data(), count);
    if (bytes.size() > limit)
      return tl::unexpected(ReadFailure::kTooLarge);
  }
  if (std::ferror(file) != 0)
    return tl::unexpected(ReadFailure::kUnreadable);
  return bytes;
}

std::string ShownPath(const std::string& scriptPath) {
  const std::string path = FromScriptPath(scriptPath);
  std::error_code failed;
  const std::string folder = PathInFolder(std::filesystem::current_path(failed).string(), "");
  return !failed && path.size() > folder.size() && path.starts_with(folder) ? path.substr(folder.size()) : path;
}

std::string ReadBeginning(const std::string& path, std::size_t most) {
  const OpenFile file(IsRegularFile(path) ? std::fopen(SystemPath(path).c_str(), "rb") : nullptr);
  std::string bytes(file ? most : 0, '\0');
  bytes.resize(file ? std::fread(bytes.data(), 1, most, file.get()) : 0);
  return bytes;
}

ReadResult ReadWholeFile(const std::string& path, std::uint64_t limit) {
  if (!IsRegularFile(path))
    return tl::unexpected(ReadFailure::kUnreadable);
  const std::string systemPath = SystemPath(path);
  std::error_code unknown; // the size of a name that this library does not take is found by reading
  if (const auto size = std::filesystem::file_size(systemPath, unknown); !unknown && size > limit)
    return tl::unexpected(ReadFailure::kTooLarge);
  const OpenFile file(std::fopen(systemPath.c_str(), "rb"));
  if (!file)
    return tl::unexpected(ReadFailure::kUnreadable);
  return ReadToEnd(file.get(), limit);
}

bool WriteWholeFile(const std::string& path, const std::string& bytes) {
  const std::optional<std::string> place = ReplaceablePath(path);
  if (!place)
    return false;
  std::string beside;
  OpenFile file = CreateBeside(*place, beside);
  if (!file)
    return false;
  if (WriteAndClose(std::move(file), bytes) && ReplaceLocalFile(beside, *place))
    return true;
  RemoveLocalFile(beside);
  return false;
}

bool AppendToFile(const std::string& path, const std::string& bytes) {
  OpenFile file(std::fopen(SystemPath(path).c_str(), "ab"));
  return file && WriteAndClose(std::move(file), bytes);
}

bool CanWriteFile(const std::string& path) {
  OpenFile file(CreateNewFile(path));
  const bool isNew = file != nullptr;
  if (!isNew && !IsRegularFile(path))
    return false;
  std::string beside = path;
  if (!isNew)
    file = CreateBeside(path, beside);
  if (!file)
    return false;
  file.reset();
  RemoveLocalFile(beside);
  return true;
}

} // namespace host
