// Loading a job file of 100,000 entries, beside counting the lines of the same file.
#include "bench/SideBySide.h"
#include "platform/Platform.h"
#include "util/JobFile.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <optional>

namespace {

constexpr std::size_t kEntries = 100000;

std::size_t CountLines(const std::string& path) {
  std::optional<platform::File> file = platform::File::Open(path, platform::File::Mode::kRead);
  std::vector<char> buffer(65536);
  std::size_t lines = 0;
  while (const std::size_t count = file ? file->Read(buffer.data(), buffer.size()) : 0) {
    lines += static_cast<std::size_t>(std::count(buffer.data(), buffer.data() + count, '\n'));
  }
  return lines;
}

// Entries as a user's list has them, every fourth in a folder beside the job file's.
std::vector<TFILEENTRY> MakeEntries(const std::string& folder) {
  std::vector<TFILEENTRY> entries(kEntries);
  for (std::size_t i = 0; i < kEntries; ++i) {
    const std::string place = i % 4 == 0 ? "\\sounds\\" : "\\jobs\\images\\";
    entries[i].path = folder + place + "file number " + std::to_string(i) + ".bin";
    entries[i].fileId = static_cast<std::uint8_t>(i);
    entries[i].fileType = static_cast<std::uint8_t>(i / 256);
    entries[i].fileMode = static_cast<std::uint32_t>(i % 3);
  }
  return entries;
}

} // namespace

int main() {
  const auto systemFolder = std::filesystem::temp_directory_path() / "ond-bench-jobfile";
  std::filesystem::create_directories(systemFolder / "jobs");
  const std::string folder = platform::FullPath(systemFolder.string()).value_or("");
  const std::string path = folder + "\\jobs\\list.dcj";
  std::vector<TFILEENTRY> entries = MakeEntries(folder);

  bool sound = true;
  const double saving = MillisecondsOf([&] { sound = SaveJobFile(path.c_str(), &entries) == 1; });
  std::vector<TFILEENTRY> loaded;
  std::size_t lines = 0;
  const SideBySide best = MeasureSideBySide(
      10, [&] { sound = LoadJobFile(path.c_str(), &loaded) == 1 && sound; }, [&] { lines = CountLines(path); });
  std::filesystem::remove_all(systemFolder);

  if (!sound || loaded.size() != kEntries || lines != kEntries) {
    std::fprintf(stderr, "the job file did not come back\n");
    return 1;
  }
  std::printf("%-36s %9.3f ms\n", "save 100000 entries", saving);
  Print("load 100000 entries", "count the lines of the same file", best);
  return 0;
}
