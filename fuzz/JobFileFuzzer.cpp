// The input is a job file.
#include "fuzz/Expect.h"
#include "platform/Platform.h"
#include "util/JobFile.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace {

// A folder for this process alone; the fuzzer ends without destructors, so the two files in it stay behind.
const std::string& Folder() {
  static const std::string folder = [] {
    char name[] = "/tmp/ond-fuzz-XXXXXX";
    Expect(mkdtemp(name) != nullptr, "a temporary folder");
    return std::string(name);
  }();
  return folder;
}

void WriteFile(const std::string& path, const char* data, std::size_t size) {
  std::optional<platform::File> file = platform::File::Open(path, platform::File::Mode::kCreate);
  Expect(file && file->Write(data, size) == size && file->Close(), "a written file");
}

std::vector<TFILEENTRY> Load(const std::string& path) {
  std::vector<TFILEENTRY> entries;
  Expect(LoadJobFile(path.c_str(), &entries) == 1, "a readable job file");
  return entries;
}

} // namespace

// A list that is saved and loaded has the same entries again; their paths only where they have no oddities.
extern "C" int LLVMFuzzerTestOneInput(const char* data, std::size_t size) {
  const std::string path = Folder() + "\\in.dcj";
  WriteFile(path, data, size);
  std::vector<TFILEENTRY> entries = Load(path);

  const std::string copy = Folder() + "\\out.dcj";
  Expect(SaveJobFile(copy.c_str(), &entries) == 1, "saved");
  const std::vector<TFILEENTRY> again = Load(copy);
  const auto same = [](const TFILEENTRY& a, const TFILEENTRY& b) {
    return a.fileId == b.fileId && a.fileType == b.fileType && a.fileMode == b.fileMode;
  };
  Expect(std::equal(entries.begin(), entries.end(), again.begin(), again.end(), same), "the same entries");
  return 0;
}
