#include "host/channel/sim/SimulatedDevice.h"
#include "tests/host/Device.h"
#include "tests/support/TemporaryFolder.h"

#include <numeric>

using namespace host;

namespace {

ChannelOptions WithFolder(const TemporaryFolder& folder) {
  ChannelOptions options;
  options.sim.folder = folder.SystemPath().string();
  return options;
}

// What a transfer reports, and when it is to be aborted.
struct ProgressLog {
  std::vector<std::uint32_t> steps;
  std::uint32_t abortAt = 0xFFFFFFFF; // never
};

// Sends a file with id and type 1.
std::int32_t SendWatched(Channel& channel, const std::string& bytes, std::uint32_t steps, ProgressLog& log) {
  const auto report = [](void* context, std::uint32_t step) -> std::int32_t {
    auto& to = *static_cast<ProgressLog*>(context);
    to.steps.push_back(step);
    return step >= to.abortAt ? 1 : 0;
  };
  return channel.TransmitFileFromMemory(bytes.data(), bytes.size(), 1, 1, OND_FILE_NORMAL, report, &log, 1, steps);
}

} // namespace

TEST_CASE("files: the directory and its summary count, and a full device refuses") {
  ChannelOptions options;
  options.sim.blocks = 6;
  const auto device = MakeDevice(options);
  REQUIRE(Send(*device, std::string(513, 'a'), 9, 1) == kChannelOk);
  REQUIRE(Send(*device, "", 0, 255) == kChannelOk);
  REQUIRE(Send(*device, std::string(512, 'b'), 255, 0) == kChannelOk);
  CHECK(DirectoryOf(*device) == "0:255:0 9:1:513 255:0:512");
  TDEVDIRENTRY entry{};
  CHECK(device->GetDirectoryEntry(3, &entry) == kInvalidArgument);
  CHECK(device->GetDirectoryEntry(0, nullptr) == kInvalidArgument);
  TDEVDIRINFO info{};
  REQUIRE(device->GetDirectoryInfo(&info) == kChannelOk);
  CHECK(std::uint64_t{info.freeFactorA} * info.freeFactorB == 2 * 512);
  CHECK(info.fileCount == 3);
  CHECK(info.bytesInFiles == 1025);
  CHECK(info.bytesOnDevice == 4 * 512);

  ProgressLog log;
  CHECK(SendWatched(*device, std::string(3 * 512, 'c'), 40, log) == kDeviceFull);
  CHECK(log.steps.empty());
  CHECK(Send(*device, std::string(4 * 512, 'd'), 9, 2) == kChannelOk); // the replaced file's blocks count as free
  CHECK(Send(*device, "", 3, 1) == kDeviceFull);
  CHECK(Send(*device, std::string(6 * 512, 'e'), 3, 1, OND_FILE_PROGRAM) == kChannelOk);
  CHECK(Send(*device, std::string(6 * 512 + 1, 'e'), 3, 1, OND_FILE_PROGRAM) == kDeviceFull);
  CHECK(DirectoryOf(*device) == "0:255:0 9:2:2048 255:0:512");
}

TEST_CASE("files: progress counts every step once, and any step can abort") {
  const auto device = MakeDevice();
  const std::string bytes(5000, 'x');
  for (const std::uint32_t steps : {1U, 40U, 100U}) {
    CAPTURE(steps);
    ProgressLog log;
    REQUIRE(SendWatched(*device, bytes, steps, log) == kChannelOk);
    std::vector<std::uint32_t> expected(steps + 1);
    std::iota(expected.begin(), expected.end(), 0U);
    CHECK(log.steps == expected);
  }
  ProgressLog none; // no steps at all are still a beginning and an end
  REQUIRE(SendWatched(*device, bytes, 0, none) == kChannelOk);
  CHECK(none.steps == std::vector<std::uint32_t>{0, 0});

  REQUIRE(device->FormatDevice(0) == kChannelOk);
  for (const std::uint32_t step : {0U, 39U, 40U}) {
    CAPTURE(step);
    ProgressLog log;
    log.abortAt = step;
    CHECK(SendWatched(*device, bytes, 40, log) == kTransferAborted);
    CHECK(log.steps.size() == step + 1);
    CHECK(DirectoryOf(*device) == "");
  }
}

TEST_CASE("files: formatting takes its time for all blocks, or for those in use") {
  ChannelOptions options;
  options.sim.blocks = 6401; // 101 times 64, the last time not all of them
  options.sim.blockTime = std::chrono::milliseconds(1);
  const auto device = MakeDevice(options);
  const auto formatting = [&](std::uint32_t usedOnly) {
    const auto start = std::chrono::steady_clock::now();
    CHECK(device->FormatDevice(usedOnly) == kChannelOk);
    return std::chrono::steady_clock::now() - start;
  };
  CHECK(formatting(0) >= std::chrono::milliseconds(101));
  auto quickest = std::chrono::steady_clock::duration::max();
  for (int attempt = 0; attempt < 5; ++attempt) // the machine may be busy
    quickest = std::min(quickest, formatting(1));
  CHECK(quickest < std::chrono::milliseconds(101));
}

TEST_CASE("device folder: files outlive the device, and a new type replaces the old file") {
  const TemporaryFolder folder;
  {
    const auto device = MakeDevice(WithFolder(folder));
    REQUIRE(Send(*device, "old", 3, 1) == kChannelOk);
    REQUIRE(Send(*device, "new", 3, 20) == kChannelOk);
    REQUIRE(Send(*device, "", 200, 0) == kChannelOk);
  }
  CHECK(folder.Names() == std::vector<std::string>{"003-type20.bin", "200-type0.bin"});
  const auto device = MakeDevice(WithFolder(folder));
  CHECK(DirectoryOf(*device) == "3:20:3 200:0:0");
}

TEST_CASE("device folder: whatever else lies there is passed over and left alone") {
  const TemporaryFolder folder;
  const char* const others[] = {"003-type1.bin.new", "03-type1.bin",   "3-type1.bin",   "300-type1.bin",
                                "004-type256.bin",   "004-type01.bin", "004-type.bin",  "004-type-1.bin",
                                "readme.txt",        "004-type1.BIN2", "x004-type1.bin"};
  for (const char* name : others)
    folder.Write(name, "garbage");
  folder.Write("001-type1.bin", std::string(513, 'a'));
  folder.Write("001-type2.bin", "second of the same id");
  folder.Write("002-type1.bin", std::string(513, 'b')); // two blocks; the one that is left has room for all the others
  std::filesystem::create_directory(folder.SystemPath() / "005-type1.bin");

  ChannelOptions options = WithFolder(folder);
  options.sim.blocks = 3;
  const auto device = MakeDevice(options);
  CHECK(DirectoryOf(*device) == "1:1:513");
  CHECK(device->FormatDevice(0) == kChannelOk);
  for (const char* name : others)
    CHECK(folder.Read(name) == "garbage");
  CHECK(folder.Read("002-type1.bin").size() == 513);
}

TEST_CASE("device folder: a file that fills the device is there again, one byte more is not seen") {
  const TemporaryFolder folder;
  ChannelOptions options = WithFolder(folder);
  options.sim.blocks = 2;
  folder.Write("001-type1.bin", std::string(1024, 'a'));
  CHECK(DirectoryOf(*MakeDevice(options)) == "1:1:1024");
  folder.Write("001-type1.bin", std::string(1025, 'a'));
  CHECK(DirectoryOf(*MakeDevice(options)) == "");
}

TEST_CASE("device folder: storing a file touches nothing else, through a link either") {
  const TemporaryFolder folder;
  folder.Write("somebody's", "theirs");
  for (const char* const left : {"003-type1.bin.new", "003-type1.bin.new0", "003-type1.bin.new2"})
    folder.Write(left, "theirs");
  std::error_code refused; // Windows asks for a privilege
  std::filesystem::create_symlink("somebody's", folder.SystemPath() / "003-type1.bin.new1", refused);
  const std::vector<std::string> before = folder.Names();

  const auto device = MakeDevice(WithFolder(folder));
  REQUIRE(Send(*device, "new", 3, 1) == kChannelOk);
  CHECK(folder.Read("003-type1.bin") == "new");
  for (const std::string& name : before)
    CHECK(folder.Read(name) == "theirs");
  CHECK(folder.Names().size() == before.size() + 1);
}

TEST_CASE("device folder: one that vanishes is a device error") {
  const TemporaryFolder folder;
  ChannelOptions options;
  options.sim.folder = (folder.SystemPath() / "device").string();
  const auto device = MakeDevice(options);
  REQUIRE(Send(*device, "a", 1, 1) == kChannelOk);
  std::filesystem::remove_all(options.sim.folder);
  CHECK(Send(*device, "b", 1, 1) == kStorageFailed);
  CHECK(device->DeleteDeviceFile(1) == kStorageFailed);
  CHECK(DirectoryOf(*device) == "1:1:1");
}
