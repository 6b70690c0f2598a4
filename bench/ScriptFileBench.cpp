// A script that reads a file of 64 MiB and writes it back, beside `cp` on the same file.
#include "bench/SideBySide.h"
#include "scriptrt/ScriptRunner.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

// A device that is there and nothing else.
class IdleChannel : public COndDeviceComm_0 {
public:
  const char* GetInfoString(std::uint32_t, std::int64_t) override { return ""; }
  std::int32_t Lock(void*, std::uint32_t) override { return 0; }
  std::int32_t Unlock(void*) override { return 0; }
  std::uint32_t GetState() override { return 1; }
  std::int32_t Receive(char*, std::uint32_t, std::uint64_t*) override { return 1; }
  std::int32_t Transmit(const char*, std::uint64_t, std::uint64_t*) override { return 1; }
  std::int32_t TransmitFileFromMemory(const char*, std::uint64_t, std::uint8_t, std::uint8_t, std::uint32_t,
                                      TransferProgressCallback, void*, std::uint32_t, std::uint32_t) override {
    return 1;
  }
  std::int32_t TransmitFile(const char*, std::uint8_t, std::uint8_t, std::uint32_t, TransferProgressCallback, void*,
                            std::uint32_t, std::uint32_t) override {
    return 1;
  }
  std::int32_t ReadDirectory() override { return 1; }
  std::uint64_t GetDirectoryEntryCount() override { return 0; }
  std::int32_t GetDirectoryEntry(std::uint32_t, TDEVDIRENTRY*) override { return 1; }
  std::int32_t GetDirectoryInfo(TDEVDIRINFO*) override { return 1; }
  std::int32_t DeleteDeviceFile(std::uint8_t) override { return 1; }
  std::int32_t FormatDevice(std::uint32_t) override { return 1; }
};

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
  CScriptRunner runner(&channel);
  runner.SetChannel(&channel);
  bool sound = true;
  const SideBySide best = MeasureSideBySide(
      10,
      [&] {
        const char* script = "writestringtofile(\"out.bin\", readstringfromfile(\"in.bin\"));";
        sound = runner.ExecuteScript(script, base.c_str(), nullptr, nullptr) == EONX_ERR_NONE && sound;
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
