#include "host/channel/sim/SimulatedDevice.h"
#include "tests/host/Device.h"
#include "tests/support/TemporaryFolder.h"

#include <numeric>

using namespace host;

namespace {

ChannelOptions WithBlocks(std::uint32_t blocks) {
  ChannelOptions options;
  options.sim.blocks = blocks;
  return options;
}

ChannelOptions WithFolder(const TemporaryFolder& folder, std::uint32_t blocks = 100) {
  ChannelOptions options = WithBlocks(blocks);
  options.sim.folder = folder.SystemPath().string();
  return options;
}

TDEVDIRINFO InfoOf(Channel& channel) {
  TDEVDIRINFO info{};
  REQUIRE(channel.ReadDirectory() == kChannelOk);
  REQUIRE(channel.GetDirectoryInfo(&info) == kChannelOk);
  return info;
}

} // namespace

TEST_CASE("files: the directory and its summary count files, bytes and blocks") {
  const auto device = MakeDevice(WithBlocks(10));
  REQUIRE(Send(*device, std::string(513, 'a'), 9, 1) == kChannelOk);
  REQUIRE(Send(*device, "", 0, 255) == kChannelOk);
  REQUIRE(Send(*device, std::string(512, 'b'), 255, 0) == kChannelOk);
  CHECK(DirectoryOf(*device) == "0:255:0 9:1:513 255:0:512");

  const TDEVDIRINFO info = InfoOf(*device);
  CHECK(std::uint64_t{info.freeFactorA} * info.freeFactorB == 6 * 512);
  CHECK(info.fileCount == 3);
  CHECK(info.bytesInFiles == 1025);
  CHECK(info.bytesOnDevice == 4 * 512);

  TDEVDIRENTRY entry{};
  CHECK(device->GetDirectoryEntry(3, &entry) == kInvalidArgument);
  CHECK(device->GetDirectoryEntry(0, nullptr) == kInvalidArgument);
}

TEST_CASE("files: a full device refuses, and a replaced file's blocks count as free") {
  const auto device = MakeDevice(WithBlocks(4));
  REQUIRE(Send(*device, std::string(2 * 512, 'a'), 1, 1) == kChannelOk);
  REQUIRE(Send(*device, std::string(512, 'b'), 2, 1) == kChannelOk);
  ProgressLog log;
  const std::string tooLarge(2 * 512, 'c');
  CHECK(device->TransmitFileFromMemory(tooLarge.data(), tooLarge.size(), 3, 1, 0, &ProgressLog::Report, &log, 1, 40) ==
        kDeviceFull);
  CHECK(log.steps.empty());
  CHECK(Send(*device, std::string(3 * 512, 'd'), 1, 2) == kChannelOk);
  CHECK(Send(*device, "", 3, 1) == kDeviceFull);
  CHECK(Send(*device, std::string(4 * 512, 'e'), 3, 1, OND_FILE_PROGRAM) == kChannelOk);
  CHECK(Send(*device, std::string(4 * 512 + 1, 'e'), 3, 1, OND_FILE_PROGRAM) == kDeviceFull);
  CHECK(DirectoryOf(*device) == "1:2:1536 2:1:512");
}

TEST_CASE("files: progress counts every step once, and any step can abort") {
  const auto device = MakeDevice();
  const std::string bytes(5000, 'x');
  for (const std::uint32_t steps : {0U, 1U, 40U, 100U}) {
    CAPTURE(steps);
    ProgressLog log;
    REQUIRE(device->TransmitFileFromMemory(bytes.data(), bytes.size(), 1, 1, 0, &ProgressLog::Report, &log, 1, steps) ==
            kChannelOk);
    // No steps at all are still a beginning and an end.
    std::vector<std::uint32_t> expected(steps == 0 ? 2 : steps + 1);
    std::iota(expected.begin(), expected.end(), 0U);
    if (steps == 0)
      expected = {0, 0};
    CHECK(log.steps == expected);
  }
  REQUIRE(device->FormatDevice(0) == kChannelOk);
  for (const std::uint32_t step : {0U, 1U, 39U, 40U}) {
    CAPTURE(step);
    ProgressLog log;
    log.abortAt = step;
    CHECK(device->TransmitFileFromMemory(bytes.data(), bytes.size(), 1, 1, 0, &ProgressLog::Report, &log, 1, 40) ==
          kTransferAborted);
    CHECK(log.steps.size() == step + 1);
    CHECK(DirectoryOf(*device) == "");
  }
}

TEST_CASE("files: modes") {
  const TemporaryFolder folder;
  const auto device = MakeDevice(WithFolder(folder));
  std::string all(256, '\0');
  std::iota(all.begin(), all.end(), '\0');
  REQUIRE(Send(*device, all, 1, 1, OND_FILE_NORMAL) == kChannelOk);
  CHECK(folder.Read("001-type1.bin") == all);

  REQUIRE(Send(*device, all, 2, 1, OND_FILE_BIT_REVERSE) == kChannelOk);
  const std::string reversed = folder.Read("002-type1.bin");
  REQUIRE(reversed.size() == all.size());
  for (unsigned value = 0; value < 256; ++value) {
    unsigned expected = 0;
    for (int bit = 0; bit < 8; ++bit)
      expected |= ((value >> bit) & 1U) << (7 - bit);
    CHECK(static_cast<unsigned char>(reversed[value]) == expected);
  }

  CHECK(Send(*device, all, 3, 1, OND_FILE_PROGRAM) == kChannelOk);
  CHECK(Send(*device, all, 3, 1, 3) == kUnknownFileMode);
  CHECK(DirectoryOf(*device) == "1:1:256 2:1:256");
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
  folder.Write("002-type1.bin", std::string(512, 'b')); // no room left on a device of two blocks
  std::filesystem::create_directory(folder.SystemPath() / "005-type1.bin");

  const auto device = MakeDevice(WithFolder(folder, 2));
  CHECK(DirectoryOf(*device) == "1:1:513");
  CHECK(device->FormatDevice(0) == kChannelOk);
  for (const char* name : others)
    CHECK(folder.Read(name) == "garbage");
}

TEST_CASE("device folder: a folder that cannot be used is said at once, one that vanishes is a device error") {
  const TemporaryFolder folder;
  folder.Write("file", "");
  ChannelOptions options;
  options.sim.folder = (folder.SystemPath() / "file").string();
  const ChannelResult refused = MakeChannel(options);
  CHECK_FALSE(refused.channel);
  CHECK(refused.error == "cannot use the folder " + options.sim.folder + " for the device's files");

  options.sim.folder = (folder.SystemPath() / "device").string();
  const auto device = MakeDevice(options);
  REQUIRE(Send(*device, "a", 1, 1) == kChannelOk);
  std::filesystem::remove_all(options.sim.folder);
  CHECK(Send(*device, "b", 1, 1) == kStorageFailed);
  CHECK(device->DeleteDeviceFile(1) == kStorageFailed);
  CHECK(DirectoryOf(*device) == "1:1:1");
}
