// A script that reads a file of 64 MiB and writes it back, beside `cp` on the same file.
#include "bench/IdleChannel.h"
#include "bench/SideBySide.h"
#include "scriptrt/run/ScriptSession.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

void WriteInput(const std::filesystem::path& path) {
  constexpr std::size_t kSize = std::size_t{64} << 20;
  std::string bytes(kSize, '\0');
  for (std::size_t i = 0; i < kSize; ++i)
    bytes[i] = static_cast<char>(i * 2654435761U >> 13);
  std::ofstream(path, std::ios::binary) << bytes;
}

} // namespace

int main() {
  const auto folder = std::filesystem::temp_directory_path() / "ond-bench-scriptfile";
  std::filesystem::create_directories(folder);
  WriteInput(folder / "in.bin");
  const std::string base = "Z:" + folder.string(); // slashes do as well
  const std::string copy = "cp '" + (folder / "in.bin").string() + "' '" + (folder / "copy.bin").string() + "'";

  IdleChannel channel;
  ScriptSession session(&channel);
  session.SetChannel(&channel);
  bool sound = true;
  const SideBySide best = MeasureSideBySide(
      10,
      [&] {
        const char* script = "writestringtofile(\"out.bin\", readstringfromfile(\"in.bin\"));";
        sound = session.ExecuteScript(script, base.c_str(), nullptr, nullptr) == EONX_ERR_NONE && sound;
      },
      [&] { sound = std::system(copy.c_str()) == 0 && sound; });
  const auto copied = std::filesystem::file_size(folder / "out.bin");
  std::filesystem::remove_all(folder);
  if (!sound || copied != 64 << 20) {
    std::fprintf(stderr, "a copy is not complete\n");
    return 1;
  }
  Print("read and write 64 MiB in a script", "cp of the same file", best);
  return 0;
}
