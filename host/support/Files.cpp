#include "host/support/Files.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

namespace host {
namespace {

struct Closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, Closer>;

bool WriteNewFile(const std::string& path, const std::string& bytes) {
  OpenFile file(std::fopen(SystemPath(path).c_str(), "wb"));
  if (!file)
    return false;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
  // Closing is where a full disk may show.
  return std::fclose(file.release()) == 0 && written;
}

} // namespace

ReadOutcome ReadWholeFile(const std::string& path, std::uint64_t limit, std::string& bytes) {
  const OpenFile file(std::fopen(SystemPath(path).c_str(), "rb"));
  if (!file)
    return ReadOutcome::kFailed;
  bytes.clear();
  std::array<char, 65536> chunk;
  while (const std::size_t count = std::fread(chunk.data(), 1, chunk.size(), file.get())) {
    bytes.append(chunk.data(), count);
    if (bytes.size() > limit)
      return ReadOutcome::kTooLarge;
  }
  return std::ferror(file.get()) != 0 ? ReadOutcome::kFailed : ReadOutcome::kComplete;
}

bool WriteWholeFile(const std::string& path, const std::string& bytes) {
  const std::string beside = path + ".new";
  if (WriteNewFile(beside, bytes) && ReplaceLocalFile(beside, path))
    return true;
  RemoveLocalFile(beside);
  return false;
}

} // namespace host
