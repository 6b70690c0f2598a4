#include "tests/host/Device.h"

#include "host/channel/sim/DeviceConsole.h"

using namespace host;

TEST_CASE("console: each command answers its line") {
  const auto device = MakeDevice();
  const struct {
    const char* command;
    const char* answer;
  } cases[] = {
      {"id\n", "simulated device, serial number 1\r\n"},
      {"ver\r", "firmware 1.0, no logic\r\n"},
      {"echo  two  words \r\n", "two  words \r\n"},
      {"echo\n", "\r\n"},
      {"  LED\n", "off\r\n"},
      {"led ON\nled\ntemp\n", "ok\r\non\r\n24.00\r\n"},
      {"led off\ntemp\n", "ok\r\n23.50\r\n"},
      {"led blue\n", "error: expected on or off\r\n"},
      {"adc 0\nadc 7\n", "400\r\n3550\r\n"},
      {"adc 8\n", "error: channels are 0 to 7\r\n"},
      {"adc\n", "error: channels are 0 to 7\r\n"},
      {"adc -1\n", "error: channels are 0 to 7\r\n"},
      {"dac 2 4096\n", "error: values are 0 to 4095\r\n"},
      {"dac 2 -1\n", "error: values are 0 to 4095\r\n"},
      {"dac 2\n", "1300\r\n"},
      {"crc 1\n", "error: no such file\r\n"},
      {"crc 256\n", "error: no such file\r\n"},
      {"lost\n", "0\r\n"},
      {"\r\n\n   \r", ""},
      {"ab\x01\xFF x\n", "error: unknown command \"ab?\xFF\", try help\r\n"},
  };
  for (const auto& each : cases) {
    CAPTURE(each.command);
    CHECK(Ask(*device, each.command) == each.answer);
  }
  const std::string help = Ask(*device, "help\n");
  for (const char* name : {"help", "ver", "id", "echo", "adc", "dac", "led", "temp", "dir", "crc", "lost"})
    CHECK(help.find(name) != std::string::npos);
}

TEST_CASE("console: an analog input settles to its output within a few readings") {
  const auto device = MakeDevice();
  CHECK(Ask(*device, "dac 0 500\nadc 0\nadc 0\nadc 0\n") == "ok\r\n450\r\n475\r\n488\r\n");
  for (int i = 0; i < 4; ++i)
    Ask(*device, "adc 0\n");
  CHECK(Ask(*device, "adc 0\n") == "500\r\n");
  CHECK(Ask(*device, "dac 0 0\nadc 0\nadc 1\n") == "ok\r\n250\r\n850\r\n");
}

TEST_CASE("console: a line may arrive and be read in pieces") {
  const auto device = MakeDevice();
  CHECK(Ask(*device, "ec") == "");
  CHECK(Ask(*device, "ho a") == "");
  std::uint64_t written = 0;
  REQUIRE(device->Transmit("b\n", 2, &written) == kChannelOk);
  char buffer[3];
  std::uint64_t count = 0;
  REQUIRE(device->Receive(buffer, sizeof buffer, &count) == kChannelOk);
  CHECK(std::string(buffer, count) == "ab\r");
  CHECK(ReadAll(*device) == "\n");
}

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
