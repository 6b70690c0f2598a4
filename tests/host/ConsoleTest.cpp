#include "tests/host/Device.h"

#include "host/channel/sim/DeviceConsole.h"

using namespace host;

TEST_CASE("console: lines and answers have bounds") {
  const auto device = MakeDevice();
  const std::string longest(DeviceConsole::kLongestLine - 5, 'x');
  CHECK(Ask(*device, "echo " + longest + "\n") == longest + "\r\n");
  CHECK(Ask(*device, "echo " + longest + "y\n") == "error: line too long\r\n");

  std::string many;
  for (int i = 0; i < 50; ++i)
    many += "echo " + longest + "\n";
  const std::string answers = Ask(*device, many);
  CHECK(answers.size() == DeviceConsole::kAnswerCapacity);
  const std::size_t sent = 50 * (longest.size() + 2);
  CHECK(Ask(*device, "lost\n") == std::to_string(sent - answers.size()) + "\r\n");
}

TEST_CASE("console: shows the stored files and the loaded logic") {
  const auto device = MakeDevice();
  REQUIRE(Send(*device, "123456789", 7, 2) == kChannelOk);
  CHECK(Ask(*device, "crc 7\n") == "CBF43926\r\n");
  CHECK(Ask(*device, "dir\n") == "  7   2          9\r\n1 files, 8191 of 8192 blocks free\r\n");
  REQUIRE(Send(*device, "123456789", 7, 2, OND_FILE_PROGRAM) == kChannelOk);
  CHECK(Ask(*device, "ver\n") == "firmware 1.0, logic of 9 bytes, CRC-32 CBF43926\r\n");
}
