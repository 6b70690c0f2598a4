#include "tests/host/Device.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/posix/FileSizeLimit.h"

using namespace host;

TEST_CASE("device folder: a file that does not fit on the disk leaves the old one") {
  const TemporaryFolder folder;
  ChannelOptions options;
  options.sim.folder = folder.SystemPath().string();
  const auto device = MakeDevice(options);
  REQUIRE(Send(*device, "old", 1, 1) == kChannelOk);
  // A small file waits in a buffer until it is closed, a large one fails while it is written.
  for (const std::size_t size : {std::size_t{200}, std::size_t{100000}}) {
    CAPTURE(size);
    const FileSizeLimit limit(100);
    CHECK(Send(*device, std::string(size, 'x'), 1, 1) == kStorageFailed);
  }
  CHECK(DirectoryOf(*device) == "1:1:3");
  CHECK(folder.Names() == std::vector<std::string>{"001-type1.bin"});
  CHECK(folder.Read("001-type1.bin") == "old");
}
