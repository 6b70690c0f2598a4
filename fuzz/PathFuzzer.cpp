// The text up to the first zero byte is a folder, the rest a file name.
#include "fuzz/Expect.h"
#include "util/Path.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace {

bool HasStep(const std::string& path) {
  int dots = 0;
  for (const char c : path) {
    if (c == '\\' && dots != 0)
      return true;
    dots = c == '.' ? (dots + 1) % 3 : 0;
  }
  return false;
}

void Join(const std::string& folder, const std::string& file) {
  std::string joined;
  try {
    const int ok = ConcatenatePathAndFile(folder, file, &joined);
    Expect(ok == 1 || joined == file, "the file as it was");
    Expect(ok == 0 || folder.empty() || !HasStep(joined), "no step left");
    Expect(joined.size() <= folder.size() + 1 + file.size(), "nothing added");
  } catch (const std::out_of_range&) {
    Expect(HasStep(folder + "\\" + file), "fails at a step only");
  }
}

void Split(const std::string& path) {
  std::string folder;
  std::string file = "?";
  SplitFileName(path, &folder, &file);
  Expect(path == file || path == folder + "\\" + file || path == folder + "\\", "the parts make the whole");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const char* data, std::size_t size) {
  const std::string_view text(data, size);
  const std::size_t end = std::min(text.find('\0'), size);
  const std::string folder(text.substr(0, end));
  const std::string file(text.substr(std::min(end + 1, size)));

  Join(folder, file);
  Split(folder);
  std::string relative;
  MakeRelativePath(folder, file, &relative);
  MakeRelativePath(folder, folder + "\\a", &relative);
  Expect(folder.empty() || relative == "a", "a file of the folder is just its name");
  return 0;
}
